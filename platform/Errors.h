// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

#include <stdexcept>

/// Base of the errors that the platform raises. They pass through the components to the caller; no handler, slot or
/// model override of ours lets one reach Qt's event loop.
class NUVO_EXPORT EPlatformError : public std::runtime_error
{
public:
    /// \param message one sentence: what was asked, and what is there.
    explicit EPlatformError(const QString &message);
    ~EPlatformError() override;

    /// The sentence to show: what was asked, and what is there.
    QString Message() const { return QString::fromUtf8(what()); }
};

/// A text that does not convert to the number asked for.
class NUVO_EXPORT EConvertError : public EPlatformError
{
public:
    using EPlatformError::EPlatformError;
    ~EConvertError() override;
};

/// Anything the database layer cannot do: no such file, server, table, field; a scan cut short; a refused statement.
class NUVO_EXPORT EDatabaseError : public EPlatformError
{
public:
    using EPlatformError::EPlatformError;
    ~EDatabaseError() override;
};

/// An index outside a string list.
class NUVO_EXPORT EStringListError : public EPlatformError
{
public:
    using EPlatformError::EPlatformError;
    ~EStringListError() override;
};

/// A component that is not of the class asked for.
class NUVO_EXPORT EInvalidCast : public EPlatformError
{
public:
    using EPlatformError::EPlatformError;
    ~EInvalidCast() override;
};
