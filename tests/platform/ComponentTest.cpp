// SPDX-License-Identifier: MIT
#include "platform/Component.h"

#include <QCoreApplication>
#include <QImage>
#include <QPixmap>
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

TEST(Component, OnAFormThatIsBeingDesignedHasRoomForItsNameWhichIsCutWhenItIsLong)
{
    Window form;
    TComponent component(&form);
    component.SetName(QStringLiteral("aRegression"));
    EXPECT_EQ(component.size(), QSize(32, 32));
    component.SetDesigning(true);
    const QSize named = component.size();
    EXPECT_GT(named.width(), component.fontMetrics().horizontalAdvance(component.Name()));
    EXPECT_GT(named.height(), 32);
    component.SetName(QStringLiteral("aRegressionOfEmployment"));
    EXPECT_GT(component.width(), named.width());
    component.SetName(QString(1000, u'n'));
    EXPECT_LT(component.width(), 200);
    component.SetDesigning(false);
    EXPECT_EQ(component.size(), QSize(32, 32));
}

TEST(Component, PaintsItsIconAboveItsName)
{
    Window form;
    TComponent component(&form);
    QPixmap red(32, 32);
    red.fill(Qt::red);
    component.SetName(QStringLiteral("aRegression"));
    component.SetDesigning(true, QIcon(red));
    form.show();
    const QImage picture = component.grab().toImage();
    EXPECT_EQ(picture.pixelColor(picture.width() / 2, 16), QColor(Qt::red));
    bool ink = false;
    for (int x = 0; x < picture.width(); ++x)
        ink = ink || picture.pixelColor(x, 32 + (picture.height() - 32) / 2) != picture.pixelColor(0, 33);
    EXPECT_TRUE(ink);
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

TEST(Component, OnAFormThatIsBeingDesignedFindsOnlyWhatIsOnIt)
{
    // The designer has two forms open, with the same name on the other and on one that was deleted from this.
    Window designer;
    auto *desk = new QWidget(&designer);
    auto *form = new QWidget(desk);
    auto *asking = new TComponent(form);
    asking->SetDesigning(true, {}, desk);
    const QString name = QStringLiteral("Table1");
    auto *elsewhere = new TComponent(&designer);
    elsewhere->SetName(name);
    elsewhere->SetDesigning(true);
    auto *deleted = new TComponent(form);
    deleted->SetName(name);
    EXPECT_EQ(asking->FindComponent<TComponent>(name), nullptr);
    deleted->SetDesigning(true);
    EXPECT_EQ(asking->FindComponent<TComponent>(name), deleted);
}
