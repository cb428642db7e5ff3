// SPDX-License-Identifier: MIT
#pragma once

#include <QDesignerDynamicPropertySheetExtension>
#include <QDesignerPropertySheetExtension>
#include <QExtensionFactory>
#include <QPointer>

class TComponent;

namespace nuvo {

/// A component's row for the whole model, which no form stores.
inline constexpr char ModelRow[] = "Model";

/// The properties of a component as the property editor shows them. Values are kept, read and written by the
/// designer's own sheet; this one says what is shown and where: properties of a widget are hidden, ours stand in
/// groups, none has an arrow that resets it, and a regression has a row with its model.
///
/// The arrows are left out because the property editor of Qt Designer 6.4 keeps the addresses of rows that showed
/// parts of a font: a later row at the same address is taken for one of them when it is reset, and what is then read
/// is gone.
class PropertySheet : public QObject,
                      public QDesignerPropertySheetExtension,
                      public QDesignerDynamicPropertySheetExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerPropertySheetExtension QDesignerDynamicPropertySheetExtension)

public:
    /// \param own the designer's own sheet of the component.
    PropertySheet(TComponent &component, QObject &own, QObject *parent);

    int count() const override;
    int indexOf(const QString &name) const override;
    QString propertyName(int index) const override;
    QString propertyGroup(int index) const override;
    void setPropertyGroup(int index, const QString &group) override;
    bool hasReset(int index) const override;
    bool reset(int index) override;
    bool isVisible(int index) const override;
    void setVisible(int index, bool visible) override;
    bool isAttribute(int index) const override;
    void setAttribute(int index, bool attribute) override;
    QVariant property(int index) const override;
    void setProperty(int index, const QVariant &value) override;
    bool isChanged(int index) const override;
    void setChanged(int index, bool changed) override;
    bool isEnabled(int index) const override;

    bool dynamicPropertiesAllowed() const override;
    int addDynamicProperty(const QString &name, const QVariant &value) override;
    bool removeDynamicProperty(int index) override;
    bool isDynamicProperty(int index) const override;
    bool canAddDynamicProperty(const QString &name) const override;

private:
    bool isModel(int index) const { return index == model_; }
    int ownIndex(int index) const { return model_ >= 0 && index > model_ ? index - 1 : index; }
    int outerIndex(int own) const { return model_ >= 0 && own >= model_ ? own + 1 : own; }
    bool isPublished(int index) const;

    TComponent &component_;
    // The two interfaces of the designer's sheet, which goes with the component.
    QPointer<QObject> own_;
    QDesignerPropertySheetExtension *sheet_;
    QDesignerDynamicPropertySheetExtension *dynamic_;
    int model_ = -1; ///< where the model's row stands, before the control variables; -1 for none
};

class SheetFactory : public QExtensionFactory
{
    Q_OBJECT

public:
    using QExtensionFactory::QExtensionFactory;

protected:
    QObject *createExtension(QObject *object, const QString &iid, QObject *parent) const override;

private:
    mutable bool asking_ = false; ///< the manager for the designer's own sheet
};

} // namespace nuvo
