#pragma once
// The analog tag picker (FrmAnalogTag): one drop-down list of the analog tags' names.
#include <QWidget>
#include <string>
#include <vector>

#include "core/station.h"

class QComboBox;

namespace kova {

class AnalogTagWindow : public QWidget {
    Q_OBJECT
  public:
    // The picked name is stored in `picked` (the string the opening window reads) and
    // announced by tagPicked before the window closes.
    AnalogTagWindow(const Station& st, std::string& picked, QWidget* parent = nullptr);

    // Choosing entry `index` of the list.
    void choose(int index);

  signals:
    void tagPicked(const QString& name);

  private:
    void fill();

    const Station& st_;
    std::string& picked_;
    std::vector<std::string> choices_;
    QComboBox* cboTagNo_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
