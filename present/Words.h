// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

namespace nuvo {

/// Texts of the page of statistics and of figures. They are in the language of the translator that a program
/// installs, and English in one that installs none, such as nuvostat.
struct PageWords
{
    Q_DECLARE_TR_FUNCTIONS(PageWords)
};

/// \copydoc PageWords
struct FigureWords
{
    Q_DECLARE_TR_FUNCTIONS(FigureWords)
};

} // namespace nuvo
