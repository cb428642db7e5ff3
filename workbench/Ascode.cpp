// SPDX-License-Identifier: MIT
#include "workbench/Ascode.h"

namespace nuvo {

namespace {

/// The statements that define a place; `variable` is what they are called on.
QStringList definitionOf(const RegressionModel &model, int place, const QString &variable)
{
    QStringList lines;
    const auto set = [&](const char *what, const QString &value) {
        lines.append(QStringLiteral("%1.%2(%3);").arg(variable, QLatin1String(what), cppLiteral(value)));
    };
    const Transformation *const transformation = model.transformation(place);
    set(place == 0 ? "SetField" : "SetField1", model.field(place));
    if (place > 0 || model.keyword(place) != u"None")
        set("SetTransformation", model.keyword(place));
    if (transformation == nullptr)
        return lines;
    switch (transformation->second) {
    case Second::Nothing:
        break;
    case Second::Field2:
        set("SetField2", model.secondField(place));
        break;
    case Second::Exponent:
        set("SetExponent", model.number(place));
        break;
    case Second::ScaleFactor:
        set("SetScaleFactor", model.number(place));
        break;
    }
    return lines;
}

} // namespace

QString cppLiteral(const QString &text)
{
    QString literal = QStringLiteral("\"");
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'"':
        case u'\\':
            literal += u'\\';
            literal += c;
            break;
        case u'\n':
            literal += QLatin1String("\\n");
            break;
        case u'\r':
            literal += QLatin1String("\\r");
            break;
        case u'\t':
            literal += QLatin1String("\\t");
            break;
        default:
            // Three octal digits end by themselves, whatever follows.
            if (c.unicode() < 0x20 || c.unicode() == 0x7f)
                literal += QStringLiteral("\\%1").arg(int(c.unicode()), 3, 8, QLatin1Char('0'));
            else
                literal += c;
        }
    }
    return literal + u'"';
}

QString fitProgram(const ModelState &state)
{
    const QString type = state.isQuery() ? QStringLiteral("TMLRQuery") : QStringLiteral("TMLRTable");
    QStringList body;
    body.append(type + QLatin1String(" regression;"));
    body.append(QStringLiteral("regression.SetDatabaseName(%1);").arg(cppLiteral(state.database)));
    if (state.isQuery()) {
        body.append(QStringLiteral("regression.SetSQL(%1);").arg(cppLiteral(state.statement())));
    } else {
        body.append(QStringLiteral("regression.SetTableName(%1);").arg(cppLiteral(state.table)));
        if (!state.filter.isEmpty()) {
            body.append(QStringLiteral("regression.SetFilter(%1);").arg(cppLiteral(state.filter)));
            body.append(QStringLiteral("regression.SetFiltered(true);"));
        }
    }
    if (state.records != RecordUse::First)
        body.append(QStringLiteral("regression.SetRecords(%1::%2);")
                        .arg(type, state.records == RecordUse::All ? QStringLiteral("AllRecords")
                                                                   : QStringLiteral("ServerRecords")));
    body += definitionOf(state.model, 0, QStringLiteral("regression.ResponseVarY()"));
    int column = 0;
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (state.model.isDefined(place))
            body += definitionOf(state.model, place, QStringLiteral("regression.ControlVar(%1)").arg(++column));
    }
    body +=
        {QStringLiteral("regression.Open();"),
         QStringLiteral("if (!regression.ReLoad())"),
         QStringLiteral("    return 1; // a message has said why"),
         QStringLiteral("regression.Execute();"),
         QStringLiteral("std::printf(\"n = %lld, R2 = %.6f\\n\", static_cast<long long>(regression.RecordsUsed()),"),
         QStringLiteral("            regression.GetRSquared());"),
         QStringLiteral("std::printf(\"%-20s %.15g\\n\", \"constant\", regression.Getb(0));"),
         QStringLiteral("for (int j = 1; j <= regression.GetNumVars(); ++j)"),
         QStringLiteral("    std::printf(\"%-20s %.15g\\n\", qPrintable(regression.GetcVar(j).OutputTerm()), "
                        "regression.Getb(j));")};
    QString code = QStringLiteral("#include <engine/%1.h>\n"
                                  "#include <platform/Errors.h>\n\n"
                                  "#include <QApplication>\n\n"
                                  "#include <cstdio>\n\n"
                                  "int main(int argc, char **argv)\n{\n"
                                  "    QApplication application(argc, argv);\n"
                                  "    try {\n")
                       .arg(state.isQuery() ? QStringLiteral("Mlrquery") : QStringLiteral("Mlrtable"));
    for (const QString &line : std::as_const(body))
        code += QLatin1String("        ") + line + u'\n';
    return code + QStringLiteral("    } catch (const EPlatformError &error) {\n"
                                 "        std::fprintf(stderr, \"%s\\n\", qPrintable(error.Message()));\n"
                                 "        return 1;\n"
                                 "    }\n"
                                 "}\n");
}

} // namespace nuvo
