// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>
#include <platform/Messages.h>
#include <select/Choice.h>
#include <select/Cvmain.h>

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <vector>

// The best model and the one after it: where they are nearly as good, the smaller one is easier to explain.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    SetMessageHandler(
        [](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); }); // no box with the report
    try {
        TMLRTable states;
        states.SetDatabaseName("samples.db");
        states.SetTableName("States");
        states.ResponseVarY().SetField("Life expectancy");
        int k = 0;
        for (const char *field : {"Population", "Income", "Illiteracy", "Murder", "High school", "Frost", "Area"}) {
            TIndepVar &control = states.ControlVar(++k);
            control.SetField1(field);
            control.SetTransformation("None");
        }
        states.Open();

        TOptimizeMLR search;
        search.SetTable(&states);
        search.SetRule(TCorvane::Textbook);
        search.SetOptCriteria(TOptimizeMLR::BIC);
        search.Run();

        const nuvo::Choice &choice = *search.Choice();
        std::vector<int> numbers; // of the models in the list, from 1; the smallest BIC first
        for (int i = 1; i <= choice.modelCount(); ++i)
            numbers.push_back(i);
        const auto bic = [&](int number) { return choice.subsets.bySize[number - 1].bic; };
        std::sort(numbers.begin(), numbers.end(), [&](int a, int b) { return bic(a) < bic(b); });
        for (const int number : {numbers[0], numbers[1]})
            std::printf("BIC %.3f  %s\n", bic(number), qPrintable(choice.terms(*choice.model(number)).join(", ")));

        search.SelectModel(numbers[1]); // loaded and fitted over the same records
        std::printf("Left on the component: %d variables, adjusted R2 = %.4f\n", states.GetNumVars(),
                    states.GetAdjustedRSquared());
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
}
