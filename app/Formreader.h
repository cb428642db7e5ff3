// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>

class QWidget;

namespace nuvo {

/// Loads the components of a form file (.ui), as a program built with the form designer has them: with their names,
/// in the form's order, each within what stands for its container.
///
/// The file may come from anywhere. Of what is in it only our components are made, with the properties that they
/// publish; every container becomes a plain QWidget and everything else is left out, so that no file, program, plugin
/// or script is opened because the form names it. What a component makes of its properties is its own business.
/// \return a widget that holds the form. \pre a QApplication
/// \throws EPlatformError with one sentence: the file cannot be read, is no form in UTF-8, is larger than 16 MiB,
/// nested deeper than 256 elements, has more than 100 components or more than 64 attributes of one element, or a
/// published property with a value of another kind.
std::unique_ptr<QWidget> loadForm(const QString &fileName);

} // namespace nuvo
