// SPDX-License-Identifier: MIT
#pragma once

#include "design/plugin/Editing.h"

#include <QObject>

namespace nuvo {

class RowTexts;

/// What is there once for a designer: the editors in its menus and property rows, and the watch over its forms. The
/// designer's core owns it.
class Workbench : public QObject
{
    Q_OBJECT

public:
    /// Makes the core's workbench where there is none yet.
    static void SetUp(QDesignerFormEditorInterface &core, const Catalogue &catalogue);

private:
    Workbench(QDesignerFormEditorInterface &core, const Catalogue &catalogue);

    void Begin();
    void WatchForm(QDesignerFormWindowInterface &form);
    void PropertyChanged(QDesignerFormWindowInterface *form, const QString &property, const QVariant &value);

    Editing editing_;
    RowTexts *texts_ = nullptr;
};

} // namespace nuvo
