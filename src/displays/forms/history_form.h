#pragma once
// The "Chart History" window (ViewHist): a log file's columns charted in blocks of 200 rows.
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "displays/history_view.h"

class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace kova {

class ChartView;
namespace forms {
class ThreadWork;
}

class HistoryWindow : public QWidget {
    Q_OBJECT
  public:
    // How "&Print" prints the window's image (the program passes its printer); false when
    // nothing was printed.
    using PrintWindow = std::function<bool(QWidget*)>;

    HistoryWindow(Station& st, ErrorReport& report, PrintWindow print = {},
                  QWidget* parent = nullptr);
    ~HistoryWindow() override;

    HistoryView& model() { return *model_; }
    ChartView* chart() const { return chart_; }

    void selectFileClicked();
    void forwardClicked();
    void backClicked();
    void printClicked();
    void exitClicked();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void listSelectionChanged();
    // After each read of the file: the column list when a new file was read, the pens, and
    // the busy cursor while a read is under way.
    void refresh();
    void showFile();
    void showPens();
    std::vector<int> selectedRows() const;

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    PrintWindow print_;
    ChartView* chart_;
    std::unique_ptr<forms::ThreadWork> work_;  // reads the file away from the scan's thread
    std::unique_ptr<HistoryView> model_;
    int columnsShown_ = 0;
    std::vector<int> acceptedRows_;  // the selection the pens were made from

    QPushButton* cmdSelectFile_;
    QLabel* lblFile_;
    QListWidget* list1_;
    QLabel* penLabels_[kHistoryPens];
    QRadioButton* optTime_;
    QRadioButton* optPeriod_;
    QPushButton* cmdUp_;
    QPushButton* cmdDown_;
    QPushButton* cmdPrint_;
    QPushButton* cmdExit_;
};

}  // namespace kova
