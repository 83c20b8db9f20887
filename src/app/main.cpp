// KOVA: the desktop program. The main window arrives with the application shell; until
// then this shows an empty main window over a station with the defaults.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>

#include "core/station.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    kova::Station station;
    QMainWindow window;
    window.setWindowTitle("KOVA - Default.Suf");
    window.setCentralWidget(new QLabel("KOVA"));
    window.resize(640, 400);
    window.show();
    return app.exec();
}
