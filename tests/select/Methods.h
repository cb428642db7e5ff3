// SPDX-License-Identifier: MIT
#pragma once

#include "select/Selections.h"

#include <QApplication>
#include <QDialog>

#include <cmath>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

// For tests that do the same to each of the methods.

struct Method
{
    const char *name;
    std::unique_ptr<TCorvane> (*make)();
};

inline void PrintTo(const Method &method, std::ostream *out)
{
    *out << method.name;
}

template <class Search>
std::unique_ptr<TCorvane> make()
{
    return std::make_unique<Search>();
}

inline const Method methods[] = {{"optimal", make<TOptimizeMLR>},
                                 {"stepwise", make<TStepWiseMLR>},
                                 {"backward", make<TBackElimMLR>},
                                 {"forward", make<TFwdSelectMLR>}};

inline std::string methodName(const testing::TestParamInfo<Method> &method)
{
    return method.param.name;
}

/// Values whose products leave the range of doubles, at both ends of it.
inline std::vector<Row> wildRows()
{
    std::vector<Row> rows;
    for (int i = 1; i <= 12; ++i) {
        const double v = i;
        rows.push_back({v * 1e150 * (i % 3), v * 1e-160, std::ldexp(v, 990 + i), 1 + v * 1e-17, v * v});
    }
    return rows;
}

/// Presses Escape in every dialog that is shown; whether there was one.
inline bool escapeFromDialogs()
{
    bool found = false;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QDialog *>(window); dialog != nullptr && dialog->isVisible()) {
            dialog->reject();
            found = true;
        }
    }
    return found;
}
