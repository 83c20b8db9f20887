#pragma once
// The application object: a fault that escapes an event handler reaches the general error
// report instead of ending the program.
#include <QApplication>

namespace kova {
class ErrorReport;
}

namespace kova::app {

class KovaApplication : public QApplication {
  public:
    KovaApplication(int& argc, char** argv);
    void setErrorReport(ErrorReport* report) { report_ = report; }
    bool notify(QObject* receiver, QEvent* event) override;

  private:
    ErrorReport* report_ = nullptr;
};

}  // namespace kova::app
