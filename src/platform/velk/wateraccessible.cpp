// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/wateraccessible.h"

#include "platform/velk/VWaterProgress.h"

#include <QAccessibleWidget>

namespace {

class WaterAccessible : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit WaterAccessible(VWaterProgress* progress)
        : QAccessibleWidget(progress, QAccessible::ProgressBar)
    { }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QVariant currentValue() const override { return static_cast<VWaterProgress*>(widget())->value(); }
    [[nodiscard]] QVariant maximumValue() const override { return 100; }
    [[nodiscard]] QVariant minimumValue() const override { return 0; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }
    void setCurrentValue(const QVariant& /*value*/) override { } // what is shown is measured, not chosen
};

QAccessibleInterface* waterInterface(const QString& /*className*/, QObject* object)
{
    auto* progress = qobject_cast<VWaterProgress*>(object);
    return progress != nullptr ? new WaterAccessible(progress) : nullptr;
}

} // namespace

void installWaterAccessible()
{
    QAccessible::installFactory(waterInterface); // Qt drops a factory that it already has
}
