#pragma once
// The application object a window benchmark needs: one for the whole run, on the offscreen
// platform unless told otherwise.
#include <QApplication>

namespace kova::bench {

inline void EnsureOffscreenApplication() {
    if (QApplication::instance()) return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "kova-bench";
    static char* argv[] = {name, nullptr};
    static QApplication app(argc, argv);
}

}  // namespace kova::bench
