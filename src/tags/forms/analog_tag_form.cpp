#include "tags/forms/analog_tag_form.h"

#include <QComboBox>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"
#include "tags/analog_tag_picker.h"

namespace kova {

AnalogTagWindow::AnalogTagWindow(const Station& st, std::string& picked, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), picked_(picked) {
    setObjectName("FrmAnalogTag");
    setWindowTitle("Select Analog Tag");
    cboTagNo_ = new QComboBox(this);
    cboTagNo_->setObjectName("CboTagNo");
    cboTagNo_->setMinimumWidth(220);
    cboTagNo_->setMaxVisibleItems(16);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(cboTagNo_);

    fill();
    // Nothing is chosen until the user picks an entry.
    cboTagNo_->setCurrentIndex(-1);
    connect(cboTagNo_, &QComboBox::activated, this, &AnalogTagWindow::choose);
    // The list follows the tag table while the picker is open.
    changes_ = st_.changes.subscribe([this](TableChange change) {
        if (change != TableChange::DaqType) fill();
    });
}

void AnalogTagWindow::fill() {
    choices_ = AnalogTagChoices(st_.tags);
    forms::RefillKeepingText(cboTagNo_, choices_);
}

void AnalogTagWindow::choose(int index) {
    picked_ = PickAnalogTag(choices_, index);
    emit tagPicked(QString::fromStdString(picked_));
    close();
}

}  // namespace kova
