// SPDX-License-Identifier: MIT
// Pictures of the model dialog and the SQL editor: modelpictures SAMPLES_DB DIRECTORY [dark]. QT_SCALE_FACTOR says
// how sharp.

#include "design/Mlrctrl.h"
#include "design/model/Modeldialog.h"
#include "design/model/Modeleditor.h"
#include "design/sql/Sqldialog.h"
#include "design/sql/Sqleditor.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Modal.h"
#include "support/Text.h"

#include <QApplication>
#include <QDir>
#include <QStyleFactory>
#include <QTreeWidget>

namespace {

QPalette darkPalette()
{
    QPalette palette(QColor(0x35, 0x36, 0x39));
    palette.setColor(QPalette::Window, QColor(0x35, 0x36, 0x39));
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Base, QColor(0x22, 0x23, 0x25));
    palette.setColor(QPalette::AlternateBase, QColor(0x2b, 0x2c, 0x2f));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::ButtonText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa0));
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb4, 0xff));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xc0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0x35, 0x36, 0x39));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    return palette;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(u("Fusion")));
    const bool dark = argc > 3;
    if (dark)
        QApplication::setPalette(darkPalette());
    const QDir directory(QString::fromLocal8Bit(argv[2]));
    const QString kind = QStringLiteral("-%1-%2x.png")
                             .arg(dark ? u("dark") : u("light"), qEnvironmentVariable("QT_SCALE_FACTOR", u("1")));
    bool saved = true;
    const auto save = [&](QWidget &window, const char *name) {
        QApplication::processEvents();
        saved = window.grab().save(directory.filePath(u(name) + kind)) && saved;
    };

    TMLRTable table;
    table.SetDatabaseName(QString::fromLocal8Bit(argv[1]));
    table.SetTableName(u("Longley"));
    nuvo::ModelFields fields = nuvo::modelFields(table);
    fields.fields.push_back({u("REMARKS"), u("text"), false});
    fields.fields.push_back({u("RECORDED"), u("date"), false});

    nuvo::RegressionModel model;
    model.setField(0, u("TOTEMP"));
    model.setField(1, u("GNP"));
    model.setTransformation(1, u("Log"));
    model.setField(2, u("UNEMP"));
    model.setField(3, u("YEAR"));
    {
        TModelDialog dialog;
        dialog.Editor().SetFields(fields);
        dialog.Editor().SetModel(model);
        dialog.resize(920, 600);
        dialog.Editor().FocusFields();
        dialog.show();
        dialog.activateWindow();
        save(dialog, "model");
        model.setField(4, u("POP"));
        model.setTransformation(4, u("Product"));
        model.setSecondField(4, u("ARMED"));
        model.setField(5, u("GNPDEFL"));
        model.setTransformation(5, u("Scale"));
        model.setNumber(5, u("ten"));
        model.setField(6, u("GNPX"));
        model.setField(7, u("UNEMP"));
        model.setField(8, u("GNP"));
        model.setTransformation(8, u("Quotient"));
        model.setField(9, u("POP"));
        model.setTransformation(9, u("Undefined"));
        dialog.Editor().SetModel(model);
        dialog.Editor().AddFields({u("REMARKS")});
        save(dialog, "model-problems");
        dialog.resize(dialog.minimumSizeHint());
        save(dialog, "model-small");
    }
    {
        nuvo::ModelFields many;
        many.known = true;
        for (int i = 0; i < 500; ++i)
            many.fields.push_back(
                {QStringLiteral("A field with a rather long name that goes on and on, number %1").arg(i),
                 i % 5 == 0 ? u("date and time") : u("whole number"), i % 5 != 0});
        nuvo::RegressionModel longNames;
        for (int place = 0; place < nuvo::RegressionModel::Places; ++place)
            longNames.setField(place, many.fields[std::size_t(place) * 5 + 1].name);
        longNames.setTransformation(2, u("Quotient"));
        longNames.setSecondField(2, many.fields[3].name);
        TModelDialog dialog;
        dialog.Editor().SetFields(many);
        dialog.Editor().SetModel(longNames);
        dialog.resize(920, 600);
        dialog.show();
        save(dialog, "model-many");
    }
    {
        TSqlDialog dialog;
        TSqlEditor &editor = dialog.Editor();
        editor.SetDatabase(table.DatabaseName());
        const auto tryOut = [&](const char *sql) {
            editor.SetText(u(sql));
            editor.Try();
            while (editor.Trying())
                QApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QApplication::processEvents();
        };
        dialog.resize(820, 560);
        dialog.show();
        tryOut(
            "-- employment and what may explain it\nSELECT YEAR, TOTEMP, GNP / 1000.0 AS \"GNP, thousands\",\n       "
            "'about ' || UNEMP AS remark\nFROM \"Longley\"\nWHERE YEAR > 1948\nORDER BY YEAR");
        auto *tables = dialog.findChild<QTreeWidget *>(u("SqlTables"));
        for (QTreeWidgetItem *item : tables->findItems(u("Longley"), Qt::MatchExactly))
            item->setExpanded(true);
        save(dialog, "sql");
        tryOut("SELECT YEAR, TOTEMPP\nFROM \"Longley\"");
        save(dialog, "sql-error");
        dialog.resize(dialog.minimumSizeHint());
        save(dialog, "sql-small");
    }
    {
        TMLRQuery query;
        query.SetName(u("mlrQuery"));
        TIndepVar variable;
        variable.SetField1(u("GNPX"));
        variable.SetTransformation(u("Log"));
        SetModalRunner([&](QDialog &dialog) {
            dialog.show();
            save(dialog, "definition");
            return int(QDialog::Rejected);
        });
        TControlDefDlg dialog;
        dialog.SetFields(fields);
        dialog.OpenForm(query, u("ControlVar01"), {u("...")}, variable);
    }
    return saved ? 0 : 1;
}
