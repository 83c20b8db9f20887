#pragma once
// The "Tag Configuration" window (CfgTags): one user tag at a time, its scaling points in
// the "Scaling" frame, the I/O names of the selected module in a drop-down.
#include <QWidget>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "tags/tag_editor.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kova {

class Printer;

class TagEditorWindow : public QWidget {
    Q_OBJECT
  public:
    TagEditorWindow(Station& st, ErrorReport& report, Printer& printer, QWidget* parent = nullptr);

    // The buttons.
    void previousClicked();
    void nextClicked();
    void findClicked();
    void deleteClicked();
    void printClicked();
    void exitClicked();

  protected:
    // Closing the window by its frame stores nothing but, like E&xit, leaves the name index
    // and the module summary matching the table.
    void closeEvent(QCloseEvent* event) override;

  private:
    void display();
    void read();
    void ioNameChosen(int index);
    // After another record is shown the keyboard goes to its first box; after a refused
    // one to the box at fault, with its text selected.
    void focusFirstBox();
    void pointAtFault();
    QWidget* boxNamed(const std::string& name) const;
    // The tag table, the module type or the whole configuration changed elsewhere.
    void tablesChanged(TableChange change);

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    Printer& printer_;
    TagForm form_;
    bool left_ = false;

    QLabel* lblTag_;
    QLineEdit* txtLabel_;
    QLineEdit* txtTagName_;
    QLineEdit* txtRTUAddr_;
    QComboBox* cboIOName_;
    QLineEdit* txtRawValue1_;
    QLineEdit* txtRawValue2_;
    QLineEdit* txtEngValue1_;
    QLineEdit* txtEngValue2_;
    QLineEdit* txtUnits_;
    QCheckBox* chkLog_;
    QLabel* lblRawValue1_;
    QLabel* lblRawValue2_;
    QLabel* lblEngValue1_;
    QLabel* lblEngValue2_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
