#pragma once

#include <QProperty>
#include <QString>

class QCheckBox;
class QLineEdit;

namespace sorvik {

// A control and a setting that show the same from now on, whichever of them changes. Nothing is written before the user
// acts. The setting must outlive the control; the binding ends with what is returned, which the control's
// window keeps.

[[nodiscard]] QPropertyNotifier bindSetting(QCheckBox& box, QProperty<bool>& setting);
[[nodiscard]] QPropertyNotifier bindSetting(QLineEdit& field, QProperty<QString>& setting);

}  // namespace sorvik
