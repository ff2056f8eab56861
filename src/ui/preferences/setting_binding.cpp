#include "ui/preferences/setting_binding.h"

#include <QCheckBox>
#include <QLineEdit>

namespace sorvik {

QPropertyNotifier bindSetting(QCheckBox& box, QProperty<bool>& setting) {
    box.setChecked(setting);
    QObject::connect(&box, &QCheckBox::toggled, [&setting](bool checked) { setting = checked; });
    return setting.addNotifier([&box, &setting] { box.setChecked(setting); });
}

QPropertyNotifier bindSetting(QLineEdit& field, QProperty<QString>& setting) {
    field.setText(setting);
    QObject::connect(&field, &QLineEdit::textChanged, [&setting](const QString& text) { setting = text; });
    return setting.addNotifier([&field, &setting] {
        if (field.text() != setting.value()) {  // setText() would move the cursor of one who is typing
            field.setText(setting);
        }
    });
}

}  // namespace sorvik
