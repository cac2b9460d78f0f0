#pragma once

#include "VXCoreExport.h"

#include <QtCore/QString>

/// Operations on texts.
class VXCORE_EXPORT VXStringHelper
{
public:
    VXStringHelper() = delete;

    /// The text with "***" in place of the values of these names: password, pwd, client_secret,
    /// refresh_token, access_token, id_token, token, code, code_verifier, Authorization, and those
    /// that the deployment adds ("Log/maskedNames"). Upper and lower case are the same; a name that
    /// ends in one of these behind a hyphen or a dot counts, too ("Proxy-Authorization").
    ///
    /// Knows the forms name=value (up to "&", a quotation mark, "<" or the end of the line),
    /// name="value", "name":"value", `<name>value</name>` and the header line
    /// "Authorization: value". A backslash may stand before quotation marks, as in a text that a
    /// log quotes. In doubt it masks too much. The effort grows with the length of the text only,
    /// whatever it holds. Thread-safe.
    [[nodiscard]] static QString hidePasswords(const QString& theText);
};
