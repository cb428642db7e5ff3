// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

namespace nuvo {

/// Texts about models, in the language of the translator that a program installs, else English.
struct ModelWords
{
    Q_DECLARE_TR_FUNCTIONS(ModelWords)
};

} // namespace nuvo
