// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Regression.h"

// What TMLRTable and TMLRQuery publish, once for both: moc wants properties in the class that shows them, in this
// order. A definition is a list of six strings there; reading and writing it repairs a list that a form holds wrong.

#define NUVO_CONTROL_PROPERTY(name, k)                                                                               \
    Q_PROPERTY(QStringList name READ name##Strings WRITE Set##name##Strings)                                         \
public:                                                                                                              \
    QStringList name##Strings() const                                                                                \
    {                                                                                                                \
        return ControlStrings(k);                                                                                    \
    }                                                                                                                \
    void Set##name##Strings(const QStringList &strings)                                                              \
    {                                                                                                                \
        SetControlStrings(k, strings);                                                                               \
    }                                                                                                                \
    TIndepVar &name()                                                                                                \
    {                                                                                                                \
        return ControlVar(k);                                                                                        \
    }                                                                                                                \
    void SetControl##k(const TIndepVar &definition)                                                                  \
    {                                                                                                                \
        SetControl(k, definition);                                                                                   \
    }

#define NUVO_REGRESSION_PROPERTIES                                                                                   \
    NUVO_CONTROL_PROPERTY(ControlVar01, 1)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar02, 2)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar03, 3)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar04, 4)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar05, 5)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar06, 6)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar07, 7)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar08, 8)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar09, 9)                                                                           \
    NUVO_CONTROL_PROPERTY(ControlVar10, 10)                                                                          \
    Q_PROPERTY(QString Description READ Description WRITE SetDescription)                                            \
    Q_PROPERTY(bool ShowLoadProgress READ ShowLoadProgress WRITE SetShowLoadProgress)                                \
    Q_PROPERTY(bool ShowWarnings READ ShowWarnings WRITE SetShowWarnings)                                            \
    Q_PROPERTY(QStringList ResponseVarY READ ResponseStrings WRITE SetResponseStrings)                               \
    Q_PROPERTY(QString ReportMessage READ ReportMessage WRITE SetReportMessage)                                      \
    Q_PROPERTY(TRecords Records READ Records WRITE SetRecords)                                                       \
public:                                                                                                              \
    /* As nuvo::RecordUse. */                                                                                        \
    enum TRecords { FirstRecords, AllRecords, ServerRecords };                                                       \
    Q_ENUM(TRecords)                                                                                                 \
    TRecords Records() const                                                                                         \
    {                                                                                                                \
        return TRecords(UseOfRecords());                                                                             \
    }                                                                                                                \
    void SetRecords(TRecords records)                                                                                \
    {                                                                                                                \
        SetUseOfRecords(nuvo::RecordUse(records));                                                                   \
    }
