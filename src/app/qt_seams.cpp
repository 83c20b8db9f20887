#include "app/qt_seams.h"

#include <QApplication>

namespace kova::app {

void QtBeeper::beep() {
    QApplication::beep();
}

}  // namespace kova::app
