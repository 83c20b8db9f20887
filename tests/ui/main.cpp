// The widget tests run on Qt's offscreen platform unless told otherwise, with one
// application object for the whole run.
#include <gtest/gtest.h>

#include <QApplication>

#include "core/forms/combo_box_accessible.h"

namespace {
QtMessageHandler gDefaultHandler = nullptr;

// The offscreen platform says it cannot raise windows or pass size hints on; that is not
// news in a test run.
void quietHandler(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text.startsWith("This plugin does not support")) return;
    if (gDefaultHandler) gDefaultHandler(type, context, text);
}
}  // namespace

int main(int argc, char** argv) {
    gDefaultHandler = qInstallMessageHandler(quietHandler);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    kova::forms::InstallComboBoxAccessible();  // as the program's application object does
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
