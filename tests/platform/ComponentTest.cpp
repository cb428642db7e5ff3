#include "platform/Component.h"

#include <QCoreApplication>
#include <QPointer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>

namespace {

class Window : public QWidget
{
public:
    Window() { resize(200, 100); }
};

} // namespace

TEST(Component, IsNotSeenAtRunTimeEvenWhenItsFormIs)
{
    Window form;
    TComponent component(&form);
    form.show();
    EXPECT_FALSE(component.isVisible());
    component.show();
    EXPECT_FALSE(component.isVisible());
    component.setVisible(true);
    component.raise();
    EXPECT_FALSE(component.isVisible());
    form.hide();
    form.show();
    EXPECT_FALSE(component.isVisible());
}

TEST(Component, ShowingOneWithoutAnOwnerOpensNoWindow)
{
    TComponent component;
    component.show();
    EXPECT_FALSE(component.isVisible());
    component.SetDesigning(true);
    EXPECT_FALSE(component.isVisible());
}

TEST(Component, StaysUnseenInALayoutAndUnderANewOwner)
{
    Window form;
    Window other;
    auto *component = new TComponent(&form);
    auto *layout = new QVBoxLayout(&other);
    other.show();
    component->setParent(&other);
    layout->addWidget(component);
    QCoreApplication::processEvents();
    EXPECT_FALSE(component->isVisible());
    component->setParent(&form);
    form.show();
    EXPECT_FALSE(component->isVisible());
}

TEST(Component, IsSeenOnAFormThatIsBeingDesigned)
{
    Window form;
    TComponent component(&form);
    component.SetDesigning(true);
    form.show();
    EXPECT_TRUE(component.isVisible());
    EXPECT_EQ(component.size(), QSize(32, 32));
    component.hide();
    EXPECT_FALSE(component.isVisible());
    component.show();
    EXPECT_TRUE(component.isVisible());
    component.SetDesigning(false);
    EXPECT_FALSE(component.isVisible());
}

TEST(Component, HasOneSize)
{
    Window form;
    TComponent component(&form);
    component.resize(100, 50);
    EXPECT_EQ(component.size(), QSize(32, 32));
    EXPECT_EQ(component.sizeHint(), QSize(32, 32));
}

TEST(Component, GoesWithItsOwner)
{
    auto form = std::make_unique<Window>();
    const QPointer<TComponent> component = new TComponent(form.get());
    EXPECT_EQ(component->Owner(), form.get());
    form.reset();
    EXPECT_TRUE(component.isNull());
}

TEST(Component, FindsTheNearestOfAName)
{
    // Two copies of a form are open at once: each finds its own.
    Window first;
    Window second;
    const QString name = QStringLiteral("Table1");
    auto *mine = new TComponent(&first);
    auto *theirs = new TComponent(&second);
    mine->SetName(name);
    theirs->SetName(name);
    EXPECT_EQ(mine->Name(), name);

    auto *asking = new TComponent(&second);
    EXPECT_EQ(asking->FindComponent<TComponent>(name), theirs);

    auto *panel = new QWidget(&second);
    auto *inPanel = new TComponent(panel);
    auto *nearest = new TComponent(panel);
    nearest->SetName(name);
    EXPECT_EQ(inPanel->FindComponent<TComponent>(name), nearest);
    delete nearest;
    EXPECT_EQ(inPanel->FindComponent<TComponent>(name), theirs);
    delete theirs;
    EXPECT_EQ(inPanel->FindComponent<TComponent>(name), nullptr);
}

TEST(Component, FindsOnlyTheClassAskedForAndNothingByAnEmptyName)
{
    Window form;
    auto *widget = new QWidget(&form);
    widget->setObjectName(QStringLiteral("Table1"));
    auto *asking = new TComponent(&form);
    EXPECT_EQ(asking->FindComponent<TComponent>(QStringLiteral("Table1")), nullptr);
    EXPECT_EQ(asking->FindComponent<TComponent>(QString()), nullptr);
    EXPECT_EQ(TComponent().FindComponent<TComponent>(QStringLiteral("Table1")), nullptr);
}
