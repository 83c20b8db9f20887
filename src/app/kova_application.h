#pragma once
#include <QApplication>

namespace kova {
class ErrorReport;
}

namespace kova::app {

// Numbers are written and read with "." and no grouping, in the C library and in every Qt
// widget, whatever the user's locale says. The application object calls it on creation.
void UseFixedNumberFormat();

// The application object: a fault that escapes an event handler reaches the general error
// report instead of ending the program, and numbers never follow the user's locale.
class KovaApplication : public QApplication {
  public:
    KovaApplication(int& argc, char** argv);
    void setErrorReport(ErrorReport* report) { report_ = report; }
    bool notify(QObject* receiver, QEvent* event) override;

  private:
    ErrorReport* report_ = nullptr;
};

}  // namespace kova::app
