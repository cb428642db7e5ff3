// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QIcon>
#include <QPointer>
#include <QWidget>

/// What a developer drops on a form: a widget only because the form designer places nothing else. While a form is
/// being designed it shows itself as an icon with its name below; it is never seen at run time. Its owner is its
/// parent; the owner deletes it.
class NUVO_EXPORT TComponent : public QWidget
{
    Q_OBJECT

    // A form designer offers and stores the properties that are not marked otherwise. What makes a widget a widget
    // means nothing for a component; only its place on the form is kept, and changed with the mouse.
    Q_PROPERTY(QRect geometry READ geometry WRITE setGeometry DESIGNABLE false)
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled DESIGNABLE false STORED false)
    Q_PROPERTY(QSizePolicy sizePolicy READ sizePolicy WRITE setSizePolicy DESIGNABLE false STORED false)
    Q_PROPERTY(QSize minimumSize READ minimumSize WRITE setMinimumSize DESIGNABLE false STORED false)
    Q_PROPERTY(QSize maximumSize READ maximumSize WRITE setMaximumSize DESIGNABLE false STORED false)
    Q_PROPERTY(QSize sizeIncrement READ sizeIncrement WRITE setSizeIncrement DESIGNABLE false STORED false)
    Q_PROPERTY(QSize baseSize READ baseSize WRITE setBaseSize DESIGNABLE false STORED false)
    Q_PROPERTY(QPalette palette READ palette WRITE setPalette DESIGNABLE false STORED false)
    Q_PROPERTY(QFont font READ font WRITE setFont DESIGNABLE false STORED false)
    Q_PROPERTY(QCursor cursor READ cursor WRITE setCursor RESET unsetCursor DESIGNABLE false STORED false)
    Q_PROPERTY(bool mouseTracking READ hasMouseTracking WRITE setMouseTracking DESIGNABLE false STORED false)
    Q_PROPERTY(bool tabletTracking READ hasTabletTracking WRITE setTabletTracking DESIGNABLE false STORED false)
    Q_PROPERTY(Qt::FocusPolicy focusPolicy READ focusPolicy WRITE setFocusPolicy DESIGNABLE false STORED false)
    Q_PROPERTY(Qt::ContextMenuPolicy contextMenuPolicy READ contextMenuPolicy WRITE setContextMenuPolicy
                   DESIGNABLE false STORED false)
    Q_PROPERTY(bool acceptDrops READ acceptDrops WRITE setAcceptDrops DESIGNABLE false STORED false)
    Q_PROPERTY(QString toolTip READ toolTip WRITE setToolTip DESIGNABLE false STORED false)
    Q_PROPERTY(int toolTipDuration READ toolTipDuration WRITE setToolTipDuration DESIGNABLE false STORED false)
    Q_PROPERTY(QString statusTip READ statusTip WRITE setStatusTip DESIGNABLE false STORED false)
    Q_PROPERTY(QString whatsThis READ whatsThis WRITE setWhatsThis DESIGNABLE false STORED false)
    Q_PROPERTY(QString accessibleName READ accessibleName WRITE setAccessibleName DESIGNABLE false STORED false)
    Q_PROPERTY(QString accessibleDescription READ accessibleDescription WRITE setAccessibleDescription
                   DESIGNABLE false STORED false)
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection WRITE setLayoutDirection RESET
                   unsetLayoutDirection DESIGNABLE false STORED false)
    Q_PROPERTY(
        bool autoFillBackground READ autoFillBackground WRITE setAutoFillBackground DESIGNABLE false STORED false)
    Q_PROPERTY(QString styleSheet READ styleSheet WRITE setStyleSheet DESIGNABLE false STORED false)
    Q_PROPERTY(QLocale locale READ locale WRITE setLocale RESET unsetLocale DESIGNABLE false STORED false)
    Q_PROPERTY(Qt::InputMethodHints inputMethodHints READ inputMethodHints WRITE setInputMethodHints
                   DESIGNABLE false STORED false)

public:
    /// \param owner becomes the parent and deletes it; null: who made it does.
    explicit TComponent(QWidget *owner = nullptr);
    ~TComponent() override;

    /// The component's name, its objectName().
    QString Name() const { return objectName(); }
    /// Nobody asks whether another component has it.
    void SetName(const QString &name) { setObjectName(name); }
    /// The parent, which deletes the component; null for none.
    QWidget *Owner() const { return parentWidget(); }

    /// Whether a form designer shows this component on a form that is being edited.
    bool Designing() const { return designing_; }
    /// \param icon what stands for the component on the form.
    /// \param ground the designer's widget that the form lies in, an ancestor; names are looked up below it.
    void SetDesigning(bool designing, const QIcon &icon = {}, const QWidget *ground = nullptr);

    /// The component of that name and class nearest to this one: names are searched from the nearest ancestor
    /// outwards, so that two copies of a form can be open. nullptr when there is none or the name is empty.
    template <class T>
    T *FindComponent(const QString &name) const
    {
        return FindComponent<T>(name, [](const T &) { return true; });
    }
    /// The same among those that a predicate takes.
    template <class T, class Takes>
    T *FindComponent(const QString &name, const Takes &takes) const;

    /// Shows a component only at design time.
    void setVisible(bool visible) override;
    /// Room for the icon, and for the name while a form is being designed.
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QString Caption() const;
    void Fit() { setFixedSize(sizeHint()); }

    bool designing_ = false;
    QIcon icon_;
    QPointer<const QWidget> ground_;
};

template <class T, class Takes>
T *TComponent::FindComponent(const QString &name, const Takes &takes) const
{
    if (name.isEmpty())
        return nullptr;
    for (QObject *scope = parent(); scope != nullptr && scope != ground_; scope = scope->parent()) {
        for (T *found : scope->findChildren<T *>(name)) {
            // One that a form designer has taken off its form stands for nothing.
            if (found->Designing() == designing_ && takes(*found))
                return found;
        }
    }
    return nullptr;
}
