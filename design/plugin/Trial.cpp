// SPDX-License-Identifier: MIT
#include "design/plugin/Trial.h"

#include "design/plugin/Rowtexts.h"
#include "engine/Regression.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Formfolder.h"
#include "platform/Messages.h"
#include "present/Forms.h"
#include "select/Corvane.h"

#include <QDesignerFormWindowInterface>
#include <QMetaProperty>

namespace {

using nuvo::Catalogue;

/// Copies of a form's components, by themselves.
class Trial
{
public:
    Trial(const TComponent &component, const Catalogue &catalogue) : catalogue_(catalogue)
    {
        nuvo::setFormFolder(ground_, nuvo::formFolder(component));
    }

    /// A component with the name and the published properties of another.
    TComponent &copy(const TComponent &component)
    {
        const QMetaObject *meta = component.metaObject();
        TComponent *made = nullptr;
        for (const nuvo::ComponentEntry &entry : catalogue_.Components()) {
            if (entry.metaObject == meta)
                made = entry.create(&ground_);
        }
        if (made == nullptr)
            throw EPlatformError(QStringLiteral("There is no component class \"%1\" here.")
                                     .arg(QString::fromLatin1(meta->className())));
        made->SetName(component.Name());
        for (int i = TComponent::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i)
            meta->property(i).write(made, meta->property(i).read(&component));
        return *made;
    }

private:
    const Catalogue &catalogue_;
    QWidget ground_; // never shown; the copies' owner
};

void needDefinitions(const TComponent &component)
{
    const QString name = component.Name();
    if (nuvo::definitionText(component, QStringLiteral("ResponseVarY")).isEmpty())
        throw EPlatformError(QStringLiteral("\"%1\" has no response yet: define ResponseVarY.").arg(name));
    for (int k = 1; k <= MaxControls; ++k) {
        if (!nuvo::definitionText(component, QStringLiteral("ControlVar%1").arg(k, 2, 10, QLatin1Char('0')))
                 .isEmpty())
            return;
    }
    throw EPlatformError(QStringLiteral("\"%1\" has no control variables yet: define ControlVar01.").arg(name));
}

/// A load that takes long can be watched and ended.
TDataSet &opened(TRegression &regression)
{
    regression.SetShowLoadProgress(true);
    regression.SetShowWarnings(true);
    regression.DataSet().Open();
    return regression.DataSet();
}

} // namespace

void nuvo::fitAndShow(const TComponent &component, const Editing &editing)
{
    guarded([&] {
        needDefinitions(component);
        Trial trial(component, editing.Components());
        TComponent &copy = trial.copy(component);
        auto &regression = dynamic_cast<TRegression &>(copy);
        opened(regression);
        if (!regression.ReLoad())
            return; // a message has said why, or the user has ended it
        regression.Execute();
        if (regression.ResultsCurrent())
            QMetaObject::invokeMethod(&copy, "ShowStatistics");
    });
}

void nuvo::chooseAndShow(const TComponent &component, const Editing &editing)
{
    guarded([&] {
        Trial trial(component, editing.Components());
        const auto *form = QDesignerFormWindowInterface::findFormWindow(const_cast<TComponent *>(&component));
        const QWidget *ground = form == nullptr ? component.Owner() : form->mainContainer();
        for (const TDataSet *dataset : ground->findChildren<TDataSet *>()) {
            if (dataset->Designing() == component.Designing())
                trial.copy(*dataset);
        }
        auto &selector = dynamic_cast<TCorvane &>(trial.copy(component));
        if (TRegression *regression = selector.Regression(); regression != nullptr) {
            needDefinitions(regression->DataSet());
            opened(*regression);
        }
        selector.setProperty("ShowProgress", true);
        selector.setProperty("ShowReport", false);
        selector.Run(); // says what is wrong with what it is bound to
        if (selector.Ended() == TRunEnd::Stopped)
            return;
        if (selector.Choice() != nullptr)
            selector.ShowChoice();
        else if (!selector.Report().isEmpty())
            MessageDlg(selector.Report(), TMsgDlgType::mtInformation);
    });
}
