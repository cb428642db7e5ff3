// SPDX-License-Identifier: MIT
#include "app/Formreader.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace {

/// A form file with these widgets on it.
QByteArray form(const QByteArray &widgets)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ui version=\"4.0\">\n <class>Form</class>\n"
           " <widget class=\"QWidget\" name=\"Form\">\n" +
           widgets + " </widget>\n <resources/>\n <connections/>\n</ui>\n";
}

QByteArray component(const char *type, const char *name, const QByteArray &properties = {})
{
    return QByteArray("<widget class=\"") + type + "\" name=\"" + name + "\">" + properties + "</widget>\n";
}

QByteArray list(const char *name, const QList<QByteArray> &strings)
{
    QByteArray text = QByteArray("<property name=\"") + name + "\"><stringlist notr=\"true\">";
    for (const QByteArray &string : strings)
        text += "<string>" + string + "</string>";
    return text + "</stringlist></property>";
}

class FormReader : public testing::Test
{
protected:
    std::unique_ptr<QWidget> Load(const QByteArray &bytes)
    {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        return nuvo::loadForm(path());
    }

    /// The sentence with which a form is refused, the part about the form left out; empty when it is loaded.
    QString Refusal(const QByteArray &bytes)
    {
        try {
            Load(bytes);
            return {};
        } catch (const EPlatformError &error) {
            const QString begin = u("The form \"%1\" cannot be loaded: ").arg(path());
            EXPECT_TRUE(error.Message().startsWith(begin)) << error.Message().toStdString();
            return error.Message().mid(begin.size());
        }
    }

    QString path() const { return folder_.filePath(u("form.ui")); }

    QTemporaryDir folder_;
};

TEST_F(FormReader, MakesTheComponentsWithTheirProperties)
{
    const auto loaded = Load(form(
        component(
            "TMLRTable", "Longley",
            "<property name=\"geometry\"><rect><x>1</x><y>2</y><width>32</width><height>32</height></rect></property>"
            "<property name=\"Active\" stdset=\"0\"><bool>true</bool></property>"
            "<property name=\"DatabaseName\"><string notr=\"true\">a &amp; b.db</string></property>"
            "<property name=\"TableName\"><string>T\xC3\xA4tigkeit</string></property>" +
                list("ControlVar01", {"GNP", "", "", "None", "", ""}) +
                list("ResponseVarY", {"TOTEMP", "1", "Log", "", "", ""}) +
                "<property name=\"Description\"><string>two\nlines &lt;</string></property>") +
        component("TMLRQuery", "Other",
                  list("SQL", {"SELECT a", " FROM b"}) +
                      "<property name=\"Records\"><enum>TMLRQuery::AllRecords</enum></property>"
                      "<property name=\"ShowWarnings\"><bool>true</bool></property>")));
    const auto *table = loaded->findChild<TMLRTable *>(u("Longley"));
    ASSERT_NE(table, nullptr);
    EXPECT_TRUE(table->ActiveWished());
    EXPECT_FALSE(table->Active());
    EXPECT_EQ(table->DatabaseName(), u("a & b.db"));
    EXPECT_EQ(table->TableName(), u("Tätigkeit"));
    EXPECT_EQ(table->ControlVar01Strings(), QStringList({u("GNP"), u(""), u(""), u("None"), u(""), u("")}));
    EXPECT_EQ(table->property("ResponseVarY").toStringList().value(0), u("TOTEMP"));
    EXPECT_EQ(table->Description(), u("two\nlines <"));
    const auto *query = loaded->findChild<TMLRQuery *>();
    ASSERT_NE(query, nullptr);
    EXPECT_EQ(query->Name(), u("Other"));
    EXPECT_EQ(query->SQL(), u("SELECT a\n FROM b"));
    EXPECT_TRUE(query->ShowWarnings());
    EXPECT_EQ(query->Records(), TMLRQuery::AllRecords);
    EXPECT_EQ(table->Records(), TMLRTable::FirstRecords);
}

TEST_F(FormReader, FindsComponentsInContainersTabsAndLayoutsInTheFormsOrder)
{
    const auto loaded = Load(form(
        component("TMLRTable", "a") +
        "<widget class=\"QTabWidget\" name=\"tabs\"><property name=\"currentIndex\"><number>1</number></property>"
        "<widget class=\"QWidget\" name=\"tab\"><attribute name=\"title\"><string>One</string></attribute>" +
        component("TMLRTable", "b") + "</widget><widget class=\"QWidget\" name=\"tab2\">" +
        "<layout class=\"QVBoxLayout\" name=\"l\"><item>" + component("TTable", "c") +
        "</item><item><layout class=\"QGridLayout\"><item row=\"0\" column=\"0\">" + component("TMLRQuery", "d") +
        "</item></layout></item><item><spacer name=\"s\"><property "
        "name=\"sizeHint\"><size/></property></spacer></item>"
        "</layout></widget></widget>"
        "<widget class=\"QScrollArea\" name=\"area\"><widget class=\"QWidget\" name=\"inner\">" +
        component("TQuery", "e") + "</widget></widget><widget class=\"QGroupBox\" name=\"group\">" +
        component("TMLRTable", "f") + "</widget><widget class=\"SomebodysDock\" name=\"dock\">" +
        component("TMLRTable", "g") + "</widget>" + component("QPushButton", "button")));
    QStringList names;
    for (const TComponent *one : loaded->findChildren<TComponent *>())
        names.append(one->Name());
    EXPECT_EQ(names.join(u' '), u("a b c d e f g"));
    EXPECT_EQ(loaded->findChild<QWidget *>(u("button")), nullptr);
    // Where names are looked up in the nearest container first, the containers have to be there.
    EXPECT_EQ(loaded->findChild<TMLRTable *>(u("b"))->parentWidget()->objectName(), u("tab"));
    EXPECT_STREQ(loaded->findChild<QWidget *>(u("area"))->metaObject()->className(), "QWidget");
}

TEST_F(FormReader, AFormThatIsAComponentItselfIsLoaded)
{
    const auto loaded = Load("<ui version=\"4.0\">" + component("TMLRTable", "Alone") + "</ui>");
    EXPECT_NE(loaded->findChild<TMLRTable *>(u("Alone")), nullptr);
}

TEST_F(FormReader, LeavesOutWhatOthersOpenOrRun)
{
    const QByteArray named = "<string>" + folder_.filePath(u("secret")).toUtf8() + "</string>";
    const auto loaded = Load(
        "<ui version=\"4.0\"><class>Form</class>"
        "<customwidgets><customwidget><class>Evil</class><extends>QWidget</extends><header>evil.h</header>"
        "<script>exec</script></customwidget></customwidgets>"
        "<widget class=\"QMainWindow\" name=\"Form\"><property name=\"windowIcon\"><iconset><normaloff>secret.png"
        "</normaloff></iconset></property><property name=\"styleSheet\">" +
        named +
        "</property><script>system</script><action name=\"a\"/><addaction name=\"a\"/>"
        "<widget class=\"QLabel\" name=\"label\"><property name=\"pixmap\"><pixmap>secret.png</pixmap></property>"
        "</widget><widget class=\"QTextBrowser\" name=\"t\"><property name=\"source\"><url>" +
        named + "</url></property></widget><widget class=\"QQuickWidget\" name=\"q\"/>" +
        component("TMLRTable", "Mine",
                  "<property name=\"styleSheet\">" + named + "</property><property name=\"secret\" stdset=\"0\">" +
                      named + "</property><property name=\"objectName\">" + named +
                      "</property><property name=\"windowIcon\"><iconset>secret.png</iconset></property>"
                      "<property name=\"TableName\"><string>t</string></property>") +
        "</widget><resources><include location=\"secret.qrc\"/></resources><images><image "
        "name=\"secret\"/></images>"
        "<connections><connection><sender>a</sender><signal>s()</signal><receiver>b</receiver><slot>x()</slot>"
        "</connection></connections><includes><include>secret.h</include></includes>"
        "<buttongroups><buttongroup name=\"g\"/></buttongroups></ui>");
    QStringList made;
    for (const QObject *one : loaded->findChildren<QObject *>())
        made.append(u(one->metaObject()->className()) + u' ' + one->objectName());
    EXPECT_EQ(made, QStringList({u("QWidget Form"), u("TMLRTable Mine")}));
    const auto *mine = loaded->findChild<TMLRTable *>();
    ASSERT_NE(mine, nullptr);
    EXPECT_EQ(mine->TableName(), u("t"));
    EXPECT_EQ(mine->styleSheet(), QString());
    EXPECT_TRUE(mine->windowIcon().isNull());
    EXPECT_TRUE(mine->dynamicPropertyNames().isEmpty());
}

TEST_F(FormReader, AListOfThreeOrNineIsRepaired)
{
    const auto loaded = Load(form(component(
        "TMLRTable", "t",
        list("ControlVar01", {"a", "b", "2"}) +
            list("ControlVar02", {"a", "b", "2", "Power", "3", "4", "5", "6", "7"}) + list("ControlVar03", {}) +
            "<property name=\"ControlVar04\"><stringlist/></property>" + list("ControlVar11", {"x"}))));
    const auto *table = loaded->findChild<TMLRTable *>();
    const TIndepVar standard;
    QStringList three = standard.ToQStringList();
    three[0] = u("a");
    three[1] = u("b");
    three[2] = u("2");
    EXPECT_EQ(table->ControlVar01Strings(), three);
    EXPECT_EQ(table->ControlVar02Strings(), QStringList({u("a"), u("b"), u("2"), u("Power"), u("3"), u("4")}));
    EXPECT_EQ(table->ControlVar03Strings(), standard.ToQStringList());
    EXPECT_EQ(table->ControlVar04Strings(), standard.ToQStringList());
}

TEST_F(FormReader, AValueOfAnotherKindIsRefusedWithItsLine)
{
    const auto refusal = [this](const QByteArray &property) {
        return Refusal(form("\n" + component("TMLRTable", "Longley", "\n" + property)));
    };
    EXPECT_EQ(refusal("<property name=\"ControlVar01\"><number>5</number></property>"),
              u("line 7: ControlVar01 of \"Longley\" has to be a list of texts, not <number>5."));
    EXPECT_EQ(refusal("<property name=\"ControlVar01\"><string>x</string></property>"),
              u("line 7: ControlVar01 of \"Longley\" has to be a list of texts, not <string>x."));
    EXPECT_EQ(refusal("<property name=\"TableName\"><stringlist><string>x</string></stringlist></property>"),
              u("line 7: TableName of \"Longley\" has to be a text, not <stringlist>x."));
    EXPECT_EQ(refusal("<property name=\"Active\"><bool>maybe</bool></property>"),
              u("line 7: Active of \"Longley\" has to be true or false, not <bool>maybe."));
    EXPECT_EQ(refusal("<property name=\"TableName\"><string>x<b/></string></property>"),
              u("line 7: there is an element \"b\" where a text should be."));
    EXPECT_EQ(refusal("<property name=\"TableName\"/>"), QString()); // no value: the default
    const auto threshold = [this](const QByteArray &value) {
        return Refusal(form(component("TFwdSelectMLR", "f", "<property name=\"FDefault\">" + value + "</property>")));
    };
    EXPECT_EQ(threshold("<double>2.5</double>"), QString());
    EXPECT_EQ(threshold("<number>2</number>"), QString());
    EXPECT_EQ(threshold("<number>2.5</number>"), u("line 5: FDefault of \"f\" has to be a number, not <number>2.5."));
}

TEST_F(FormReader, WhatIsNoFormIsRefused)
{
    EXPECT_EQ(Refusal(""), u("it is empty."));
    EXPECT_EQ(Refusal("hello"), u("line 1: start tag expected."));
    EXPECT_EQ(Refusal("\xff\xfe\x41"), u("it is no text in UTF-8."));
    EXPECT_EQ(Refusal("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><ui a=\"\xe4\"/>"),
              u("it is no text in UTF-8."));
    EXPECT_EQ(Refusal("<html/>"), u("line 1: it is no form of Qt Designer."));
    EXPECT_EQ(Refusal("<ui/>"), u("line 1: it is of version \"\", and forms of version 4 are read."));
    EXPECT_EQ(Refusal("<ui version=\"3.3\"/>"),
              u("line 1: it is of version \"3.3\", and forms of version 4 are read."));
    EXPECT_EQ(Refusal("<ui version=\"4.0\"/>"), u("line 1: it has no widget."));
    EXPECT_EQ(Refusal(form(component("TMLRTable", "t", "\xff\xff"))), u("it is no text in UTF-8."));
    EXPECT_EQ(Refusal(form("<a></b>")), u("line 5: opening and ending tag mismatch."));
    EXPECT_EQ(Refusal(form("&unknown;")), u("line 5: entity 'unknown' not declared."));
    EXPECT_EQ(Refusal(form("") + "<more/>"), u("line 9: extra content at end of document."));
}

TEST_F(FormReader, AFileCutShortAnywhereIsRefused)
{
    const QByteArray whole =
        form(component("TMLRTable", "t", list("ControlVar01", {"GNP", "", "", "None"})) + component("QFrame", "f"));
    ASSERT_EQ(Refusal(whole), QString());
    for (qsizetype length = 0; length < whole.trimmed().size(); ++length)
        EXPECT_NE(Refusal(whole.left(length)), QString()) << length;
}

TEST_F(FormReader, EntitiesAreRefused)
{
    QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE ui [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i)
        bomb += "<!ENTITY a" + QByteArray::number(i) + " \"" + ("&a" + QByteArray::number(i - 1) + ";").repeated(10) +
                "\">";
    EXPECT_EQ(Refusal(bomb + "]><ui version=\"4.0\"><widget class=\"QWidget\" name=\"&a29;\"/></ui>"),
              u("line 1: it has a document type declaration, and no form needs one."));
    EXPECT_EQ(Refusal("<!DOCTYPE ui [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><ui version=\"4.0\"><widget "
                      "class=\"QWidget\" name=\"&x;\"/></ui>"),
              u("line 1: it has a document type declaration, and no form needs one."));
}

TEST_F(FormReader, DepthSizeAndNumberHaveLimits)
{
    const auto nested = [](qsizetype depth) {
        return form(QByteArray("<widget class=\"QFrame\" name=\"f\">").repeated(depth) + component("TMLRTable", "t") +
                    QByteArray("</widget>").repeated(depth));
    };
    EXPECT_EQ(Refusal(nested(253)), QString());
    EXPECT_EQ(Refusal(nested(254)), u("line 5: it is nested deeper than 256 elements."));
    EXPECT_EQ(Refusal(nested(300000)), u("line 5: it is nested deeper than 256 elements."));
    EXPECT_EQ(Refusal(form(QByteArray("<foreign>").repeated(1000000))),
              u("line 5: it is nested deeper than 256 elements."));
    EXPECT_EQ(Refusal(form(component("TTable", "t").repeated(100))), QString());
    EXPECT_EQ(Refusal(form(component("TTable", "t").repeated(101))), u("line 105: it has more than 100 components."));
    EXPECT_EQ(Refusal(QByteArray(17 << 20, ' ')), u("it is larger than 16 MiB."));
}

// Qt's reader takes time with the square of an element's attributes: a file of a megabyte would take a minute.
TEST_F(FormReader, AttributesHaveALimit)
{
    const auto attributes = [](int number, const QByteArray &value) {
        QByteArray element = "<!-- a ' \" --><?p ' ?><x>it's<![CDATA[ ' <]]></x><a";
        for (int i = 0; i < number; ++i)
            element += " a" + QByteArray::number(i) + "=" + value;
        return form(element + "/>" + component("TMLRTable", "t"));
    };
    const QString refused = u("it has an element with more than 64 attributes.");
    for (const QByteArray value : {"\"1\"", "'>'", "\"'\"", "'\"'", "\"/>\""}) {
        EXPECT_EQ(Refusal(attributes(64, value)), QString()) << value.toStdString();
        EXPECT_EQ(Refusal(attributes(65, value)), refused) << value.toStdString();
        EXPECT_EQ(Refusal(attributes(500000, value)), refused) << value.toStdString();
    }
}

TEST_F(FormReader, AHundredThousandControlsAreLeftOut)
{
    const auto loaded = Load(
        form(component("QPushButton", "b", "<property name=\"text\"><string>x</string></property>").repeated(100000) +
             component("TMLRTable", "t", list("ControlVar01", QList<QByteArray>(100000, "x")))));
    EXPECT_EQ(loaded->findChildren<QWidget *>().size(), 2); // the form and the component
    EXPECT_EQ(loaded->findChild<TMLRTable *>()->ControlVar01Strings().size(), 6);
}

TEST_F(FormReader, WhatCannotBeReadIsTold)
{
    const auto refusal = [](const QString &name) {
        try {
            nuvo::loadForm(name);
            return QString();
        } catch (const EPlatformError &error) {
            return error.Message();
        }
    };
    EXPECT_EQ(refusal(u("/no/such/form.ui")),
              u("The form \"/no/such/form.ui\" cannot be loaded: No such file or directory."));
    EXPECT_EQ(refusal(u("/")), u("The form \"/\" cannot be loaded: file to open is a directory."));
    EXPECT_EQ(refusal(u("/dev/null")), u("The form \"/dev/null\" cannot be loaded: it is empty."));
    EXPECT_EQ(refusal(u("/dev/zero")), u("The form \"/dev/zero\" cannot be loaded: it is larger than 16 MiB."));
}

} // namespace
