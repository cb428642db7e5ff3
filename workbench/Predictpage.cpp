// SPDX-License-Identifier: MIT
#include "workbench/Predictpage.h"

#include "engine/Regression.h"
#include "engine/Termvalue.h"
#include "engine/kernel/Prediction.h"
#include "platform/Errors.h"
#include "workbench/Predicttable.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>
#include <map>

namespace nuvo {

namespace {

QString shown(double figure)
{
    return std::isfinite(figure) ? QLocale().toString(figure, 'g', 8) : QStringLiteral("-");
}

/// Groups of digits are in the way of whoever changes them.
QString typed(double figure)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(figure, 'g', 6);
}

} // namespace

PredictPage::PredictPage(QWidget *parent)
    : QWidget(parent), table_(new QPushButton(tr("Predict a &table…"), this)),
      file_(new QPushButton(tr("Predict a &CSV file…"), this)), grid_(new QGridLayout),
      level_(new QDoubleSpinBox(this)), result_(new QLabel(this))
{
    setObjectName(QStringLiteral("PredictPage"));
    level_->setObjectName(QStringLiteral("Level"));
    level_->setRange(0.5, 0.999);
    level_->setDecimals(3);
    level_->setSingleStep(0.01);
    level_->setValue(0.95);
    level_->setToolTip(tr("Level of the intervals"));
    level_->setAccessibleName(tr("Level of the intervals"));
    result_->setObjectName(QStringLiteral("Prediction"));
    result_->setTextFormat(Qt::PlainText);
    result_->setWordWrap(true);
    result_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    table_->setObjectName(QStringLiteral("PredictTable"));
    table_->setToolTip(tr("Write the predictions for every record of a table of this database into a CSV file"));
    file_->setObjectName(QStringLiteral("PredictFile"));
    file_->setToolTip(tr("Write the predictions for every record of another CSV file into a CSV file"));
    auto *const line = new QHBoxLayout;
    auto *const levelLabel = new QLabel(tr("&Level"), this);
    levelLabel->setBuddy(level_);
    line->addWidget(levelLabel);
    line->addWidget(level_);
    line->addStretch(1);
    line->addWidget(table_);
    line->addWidget(file_);
    auto *const all = new QVBoxLayout(this);
    all->addLayout(grid_);
    all->addLayout(line);
    all->addSpacing(12);
    all->addWidget(result_);
    all->addStretch(1);
    grid_->setColumnStretch(1, 1);
    connect(level_, &QDoubleSpinBox::valueChanged, this, &PredictPage::Predict);
    connect(table_, &QPushButton::clicked, this, [this] { Q_EMIT TableWanted(level_->value()); });
    connect(file_, &QPushButton::clicked, this, [this] { Q_EMIT FileWanted(level_->value()); });
    SetFit(nullptr, {});
}

void PredictPage::SetFit(TRegression *regression, const RegressionModel &model)
{
    regression_ = regression;
    table_->setEnabled(regression != nullptr);
    file_->setEnabled(regression != nullptr);
    if (regression != nullptr)
        MakeEdits(fieldsOf(model), model);
    for (QLineEdit *const edit : edits_)
        edit->setEnabled(regression != nullptr);
    Predict();
}

void PredictPage::MakeEdits(const QStringList &fields, const RegressionModel &model)
{
    if (fields != fields_) {
        std::map<QString, QString> before;
        for (size_t i = 0; i < edits_.size(); ++i) {
            before[fields_[qsizetype(i)]] = edits_[i]->isModified() ? edits_[i]->text() : QString();
            delete labels_[i];
            delete edits_[i];
        }
        labels_.clear();
        edits_.clear();
        fields_ = fields;
        for (const QString &field : fields) {
            auto *const edit = new QLineEdit(this);
            edit->setObjectName(QStringLiteral("Value_") + field);
            edit->setAccessibleName(field);
            edit->setPlaceholderText(tr("a number"));
            edit->setText(before[field]);
            edit->setModified(!before[field].isEmpty());
            auto *const label = new QLabel(QString(field).replace(u'&', QLatin1String("&&")), this);
            label->setTextFormat(Qt::PlainText);
            label->setBuddy(edit);
            grid_->addWidget(label, int(edits_.size()), 0);
            grid_->addWidget(edit, int(edits_.size()), 1);
            connect(edit, &QLineEdit::textChanged, this, &PredictPage::Predict);
            labels_.push_back(label);
            edits_.push_back(edit);
        }
        for (size_t i = 1; i < edits_.size(); ++i)
            setTabOrder(edits_[i - 1], edits_[i]);
        if (!edits_.empty())
            setTabOrder(edits_.back(), level_);
        setTabOrder(level_, table_);
        setTabOrder(table_, file_);
    }
    // A field that is a term as it stands has a mean.
    int column = 0;
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (!model.isDefined(place))
            continue;
        ++column;
        const auto at = fields_.indexOf(model.field(place));
        if (model.keyword(place) == u"None" && at >= 0 && !edits_[size_t(at)]->isModified()) {
            const QSignalBlocker quiet(edits_[size_t(at)]);
            edits_[size_t(at)]->setText(typed(regression_->GetxBar(column)));
        }
    }
}

void PredictPage::Predict()
{
    predicted_ = {};
    if (regression_ == nullptr) {
        result_->setText(tr("There is no fit to predict with: drag a field to Y and others to X1, X2, …"));
        return;
    }
    FieldValues values;
    for (size_t i = 0; i < edits_.size(); ++i) {
        bool isNumber = false;
        const double value = QLocale().toDouble(edits_[i]->text().trimmed(), &isNumber);
        if (!isNumber) {
            const QString text = edits_[i]->text().trimmed();
            result_->setText(text.isEmpty() ? tr("%1 has no value yet.").arg(fields_[qsizetype(i)])
                                            : tr("\"%1\" is no number.").arg(text));
            return;
        }
        values.emplace_back(fields_[qsizetype(i)], value);
    }
    try {
        const Prediction at = regression_->PredictAt(values, level_->value());
        const QString level = QLocale().toString(level_->value() * 100, 'g', 4);
        QStringList cells;
        for (const auto &[field, value] : values) {
            predicted_.columns.append({field});
            cells.append(shown(value));
        }
        for (const QString &heading : {regression_->ResponseVarY().OutputTerm(), tr("Standard error"), tr("Mean low"),
                                       tr("Mean high"), tr("New low"), tr("New high")})
            predicted_.columns.append({heading});
        for (const double figure :
             {at.value, at.standardError, at.confidence[0], at.confidence[1], at.prediction[0], at.prediction[1]})
            cells.append(shown(figure));
        predicted_.rows.append(cells);
        result_->setText(
            tr("%1 = %2\nStandard error of the mean %3\nMean, %4 %: %5 to %6\nNew observation, %4 %: %7 to %8")
                .arg(regression_->ResponseVarY().OutputTerm(), shown(at.value), shown(at.standardError), level,
                     shown(at.confidence[0]), shown(at.confidence[1]), shown(at.prediction[0]),
                     shown(at.prediction[1])));
    } catch (const EPlatformError &error) {
        result_->setText(error.Message());
    }
}

} // namespace nuvo
