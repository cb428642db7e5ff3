// SPDX-License-Identifier: MIT
#include "app/Commandline.h"
#include "app/Usage.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace {

nuvo::FitOptions fitOptions(std::vector<std::string> more)
{
    more.insert(more.begin(), {"fit", "--database", "d", "--table", "t", "--response", "y", "--control", "x",
                               "--control", "\"GNP/cap\"*Z"});
    return std::get<nuvo::FitOptions>(nuvo::parseCommandLine(more));
}

/// The sentence without its hint; empty when the line is taken.
QString fitRefusal(const std::vector<std::string> &more)
{
    try {
        fitOptions(more);
        return {};
    } catch (const nuvo::UsageError &error) {
        const QString hint = u(" See \"nuvostat fit --help\".");
        EXPECT_TRUE(error.Message().endsWith(hint)) << error.Message().toStdString();
        return error.Message().chopped(hint.size());
    }
}

TEST(FitOptions, UnlessToldNothingMoreThanTheFitIsAskedFor)
{
    const nuvo::FitOptions options = fitOptions({});
    EXPECT_EQ(options.level, 0.95);
    EXPECT_FALSE(options.influence || options.robust);
    EXPECT_TRUE(options.at.isEmpty() && options.saveObservations.isEmpty() && options.saveCanvases.isEmpty());
    EXPECT_EQ(options.plotFormat, nuvo::FigureFormat::Png);
    EXPECT_EQ(options.plotSize, QSize(800, 600));
    EXPECT_EQ(options.format, nuvo::OutputFormat::Text);
}

TEST(FitOptions, AreTakenAsTheyAreGiven)
{
    const nuvo::FitOptions options = fitOptions(
        {"--level=0.9", "--influence", "--robust", "hac", "--save-observations", "o.csv", "--save-canvases", "c",
         "--save-plots", "p", "--plot-format", "svg", "--plot-size", "1024x768", "--format", "report"});
    EXPECT_EQ(options.level, 0.9);
    EXPECT_TRUE(options.influence);
    EXPECT_EQ(options.robust, nuvo::RobustKind::Hac);
    EXPECT_EQ(options.saveObservations, u("o.csv"));
    EXPECT_EQ(options.saveCanvases, u("c"));
    EXPECT_EQ(options.plotFormat, nuvo::FigureFormat::Svg);
    EXPECT_EQ(options.plotSize, QSize(1024, 768));
    EXPECT_EQ(options.format, nuvo::OutputFormat::Report);
    EXPECT_EQ(fitOptions({"--robust=hc3"}).robust, nuvo::RobustKind::Hc3);
    EXPECT_EQ(fitOptions({"--level", "1e-9"}).level, 1e-9);
}

TEST(FitOptions, ALevelIsBetweenZeroAndOne)
{
    for (const char *level : {"0", "1", "2", "-0.5", "nan", "inf"})
        EXPECT_EQ(fitRefusal({"--level", level}),
                  u("--level is more than 0 and less than 1, not \"%1\".").arg(u(level)));
    for (const char *level : {"abc", "", "0,95", "95%"})
        EXPECT_EQ(fitRefusal({std::string("--level=") + level}), u("--level is a number, not \"%1\".").arg(u(level)));
}

TEST(FitOptions, AnUnknownKindIsRefused)
{
    EXPECT_EQ(fitRefusal({"--robust", "hc4"}), u("--robust is hc0, hc1, hc2, hc3 or hac, not \"hc4\"."));
    EXPECT_EQ(fitRefusal({"--plot-format", "gif"}), u("--plot-format is png, svg or pdf, not \"gif\"."));
    EXPECT_EQ(fitRefusal({"--format", "xml"}), u("--format is text, report or json, not \"xml\"."));
    EXPECT_EQ(fitRefusal({"--save-canvases="}),
              u("--save-canvases takes the name of a directory, not an empty text."));
    EXPECT_EQ(fitRefusal({"--save-observations="}),
              u("--save-observations takes the name of a file, not an empty text."));
    for (const char *size : {"800", "800x", "x600", "0x0", "99x600", "800x10001", "-800x600", "800*600", "1x2x3", ""})
        EXPECT_EQ(fitRefusal({std::string("--plot-size=") + size}),
                  u("--plot-size is WIDTHxHEIGHT, each a whole number from 100 to 10000, not \"%1\".").arg(u(size)));
}

TEST(FitOptions, ValuesToPredictAtAreFieldsOfTheControls)
{
    const nuvo::FieldValues wanted{{u("x"), 1.5}, {u("GNP/cap"), -2e3}, {u("Z"), 0}};
    for (const char *at : {"x=1.5,\"GNP/cap\"=-2000,Z=0", " X = 1.5 , \"gnp/cap\" = -2e3,z=0 ",
                           "x=1.5,GNP/cap=-2E3,Z=0", "\"x\"=+1.5,\"GNP/cap\"=-2000.0,\"Z\"=-0"})
        EXPECT_EQ(fitOptions({"--at", at}).at, QList<nuvo::FieldValues>{wanted}) << at;
    const nuvo::FitOptions two = fitOptions({"--at", "x=1,GNP/cap=2,Z=3", "--at", "Z=6,GNP/cap=5,x=4"});
    ASSERT_EQ(two.at.size(), 2);
    EXPECT_EQ(two.at[1].front(), (nuvo::FieldValue{u("Z"), 6}));
}

TEST(FitOptions, AFieldOfAnyNameCanBeGiven)
{
    const QList<nuvo::Term> controls{nuvo::parseControl(u("\"a=\"\"b,c\""))};
    EXPECT_EQ(nuvo::parseFieldValues(u("\"a=\"\"b,c\"=7"), controls), (nuvo::FieldValues{{u("a=\"b,c"), 7}}));
    EXPECT_TRUE(nuvo::parseFieldValues(QString(), {nuvo::parseControl(QString())}).empty());
}

TEST(FitOptions, AnUnknownFieldOneTwiceAMissingOneAndATextAreRefused)
{
    EXPECT_EQ(fitRefusal({"--at", "x=1,y=2"}),
              u("--at names \"y\", which no control uses; they use \"x\", \"GNP/cap\", \"Z\"."));
    EXPECT_EQ(fitRefusal({"--at", "x=1,X=2,GNP/cap=1,Z=1"}), u("--at names \"X\" twice."));
    EXPECT_EQ(fitRefusal({"--at", "x=1"}), u("--at needs a value for \"GNP/cap\", \"Z\" as well."));
    EXPECT_EQ(fitRefusal({"--at="}), u("--at needs a value for \"x\", \"GNP/cap\", \"Z\" as well."));
    for (const char *value : {"abc", "", "nan", "inf", "1e999", "1 2", "\"1\""}) {
        const QString sentence = fitRefusal({"--at", std::string("GNP/cap=1,Z=1,x=") + value});
        EXPECT_TRUE(sentence == u("--at takes a number for \"x\", not \"%1\".").arg(u(value)) ||
                    sentence.startsWith(u("--at is FIELD=VALUE")))
            << sentence.toStdString();
    }
    for (const char *at : {"x", "=1", "x=1,,Z=2", "x=1,", "\"x=1", "\"x\"1=2", "\"\"=1"}) {
        EXPECT_EQ(fitRefusal({"--at", at}), u("--at is FIELD=VALUE[,FIELD=VALUE]..., not \"%1\".").arg(u(at))) << at;
    }
    EXPECT_EQ(fitRefusal({"--at"}), u("--at needs a value."));
}

} // namespace
