#include "tags/forms/analog_tag_form.h"

#include <QComboBox>
#include <QVBoxLayout>

#include "tags/analog_tag_picker.h"

namespace kova {

AnalogTagWindow::AnalogTagWindow(const Station& st, std::string& picked, QWidget* parent)
    : QWidget(parent, Qt::Window), picked_(picked) {
    setObjectName("FrmAnalogTag");
    setWindowTitle("Select Analog Tag");
    cboTagNo_ = new QComboBox(this);
    cboTagNo_->setObjectName("CboTagNo");
    cboTagNo_->setMinimumWidth(220);
    cboTagNo_->setMaxVisibleItems(16);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(cboTagNo_);

    choices_ = AnalogTagChoices(st.tags);
    cboTagNo_->clear();
    for (const auto& name : choices_) cboTagNo_->addItem(QString::fromStdString(name));
    // Nothing is chosen until the user picks an entry.
    cboTagNo_->setCurrentIndex(-1);
    connect(cboTagNo_, &QComboBox::activated, this, &AnalogTagWindow::choose);
}

void AnalogTagWindow::choose(int index) {
    picked_ = PickAnalogTag(choices_, index);
    emit tagPicked(QString::fromStdString(picked_));
    close();
}

}  // namespace kova
