#include "desktop/windows/swatch_names.h"

#include "app/color_wells.h"
#include "desktop/windows/capitalized.h"
#include "desktop/windows/color_name.h"
#include "desktop/windows/color_well.h"
#include "desktop/windows/paint_button.h"
#include "platform/stored_values.h"
#include "profiles/color_slots.h"

namespace glimra::desktop {

namespace {

QString letterOf(int tag) {
    return tag == 0 ? QString("cooldown color") : QString("color ") + QChar('A' + tag - 1);
}

} // namespace

SwatchNames::SwatchNames(QWidget* painter, app::AppDelegate& delegate, platform::UserDefaults& userDefaults)
    : m_painter(painter),
      m_delegate(delegate),
      m_userDefaults(userDefaults) {
    for (platform::ColorWell* const well : app::colorWells(delegate.outlets()))
        well->color.changed.observe([this](const platform::Color&) { show(); });
    for (QAbstractButton* const button : painter->findChildren<QAbstractButton*>())
        if (auto* const well = dynamic_cast<ColorWell*>(button))
            well->named = [this, tag = button->property("tag").toInt()](const QString& name) {
                m_userDefaults.set(keyOfOwnName(tag), name.trimmed().toStdString());
                show();
            };
}

std::string SwatchNames::keyOfOwnName(int tag) const {
    const std::string color = tag == 0 ? "Cooldown" : std::string(1, static_cast<char>('A' + tag - 1));
    return "nameOfColor" + color + std::to_string(m_delegate.state().canvas.profile);
}

QString SwatchNames::nameOf(int tag) const {
    const std::string own = platform::storedString(m_userDefaults, keyOfOwnName(tag)).value_or("");
    const QString look = colorName(app::wellOfTag(m_delegate.outlets(), tag).color.get());
    return letterOf(tag) + (own.empty() ? "" : ", " + QString::fromStdString(own)) + ", " + look;
}

QString SwatchNames::nameOfSlot(int slot) const {
    for (const platform::ColorWell* const well : app::colorWells(m_delegate.outlets()))
        if (app::slotOfWell(*well) == slot)
            return nameOf(well->tag);
    return {};
}

void SwatchNames::show() {
    for (QAbstractButton* const button : m_painter->findChildren<QAbstractButton*>()) {
        const int tag = button->property("tag").toInt();
        if (auto* const well = dynamic_cast<ColorWell*>(button)) {
            well->setOwnName(QString::fromStdString(
                platform::storedString(m_userDefaults, keyOfOwnName(tag)).value_or("")));
            well->setAccessibleName("Change " + nameOf(tag));
        } else if (dynamic_cast<PaintButton*>(button) != nullptr) {
            button->setAccessibleName(capitalized(nameOf(tag)));
        } else {
            continue;
        }
        button->setToolTip(button->accessibleName());
    }
}

} // namespace glimra::desktop
