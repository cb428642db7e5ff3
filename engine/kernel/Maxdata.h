// SPDX-License-Identifier: MIT
#pragma once

/// The limits of a regression. They are fixed: the report, the matrices and the streamed definitions have these
/// shapes.
inline constexpr int MaxObservations = 2500;
inline constexpr int MaxControls = 10;
/// Parameters: the control variables and the constant.
inline constexpr int MaxParameters = MaxControls + 1;
