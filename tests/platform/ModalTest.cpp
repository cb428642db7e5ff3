// SPDX-License-Identifier: MIT
#include "platform/Modal.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QScopeGuard>

#include <memory>

namespace {

TEST(Modal, WhereNobodyCanAnswerADialogIsShownAndClosedAgain)
{
    EXPECT_FALSE(nuvo::somebodyCanAnswer()) << "the tests run off screen";
    QDialog dialog;
    int shown = 0;
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&](int result) {
        ++shown;
        EXPECT_EQ(result, int(QDialog::Rejected));
    });
    EXPECT_EQ(ShowModal(dialog), int(QDialog::Rejected));
    EXPECT_EQ(shown, 1);
    EXPECT_FALSE(dialog.isVisible());
}

TEST(Modal, ADialogMayBeFreedWhileItIsShown)
{
    class FreesItself : public QDialog
    {
        void done(int) override { delete this; }
    };
    const QPointer<QDialog> dialog = new FreesItself;
    EXPECT_EQ(ShowModal(*dialog), int(QDialog::Rejected));
    EXPECT_TRUE(dialog.isNull());
}

TEST(Modal, ARunnerTakesItsPlaceUntilAnotherComes)
{
    const auto usual = qScopeGuard([] { SetModalRunner({}); });
    QDialog dialog;
    QDialog *met = nullptr;
    EXPECT_FALSE(SetModalRunner([&met](QDialog &shown) {
        met = &shown;
        return 7;
    }));
    EXPECT_EQ(ShowModal(dialog), 7);
    EXPECT_EQ(met, &dialog);
    EXPECT_FALSE(dialog.isVisible()) << "showing is the runner's";

    const TModalRunner before = SetModalRunner([](QDialog &) { return 8; });
    EXPECT_EQ(ShowModal(dialog), 8);
    ASSERT_TRUE(before);
    EXPECT_EQ(before(dialog), 7);
    SetModalRunner({});
    EXPECT_EQ(ShowModal(dialog), int(QDialog::Rejected));
}

TEST(Modal, ARunnerMayReplaceItself)
{
    const auto usual = qScopeGuard([] { SetModalRunner({}); });
    const auto alive = std::make_shared<int>(5);
    SetModalRunner([alive](QDialog &) {
        SetModalRunner({});
        return *alive; // what it has captured must still be there
    });
    QDialog dialog;
    EXPECT_EQ(ShowModal(dialog), 5);
    EXPECT_EQ(alive.use_count(), 1);
}

} // namespace
