#pragma once

#include "VXSimulatorResponse.h"

#include <QtCore/QJsonObject>

#include <optional>

/// A planned deviation from a path's usual answer. A plain value; reentrant.
struct VXSimulatorBehaviour
{
    QString path;      ///< decoded path; with "*" at the end all that begin so
    QByteArray method; ///< only this one; empty: any
    int status = 0;    ///< instead of the usual answer; 0: the usual answer
    int delayMs = 0;   ///< milliseconds before the answer
    int times = 1;     ///< so often, then it is gone; -1: for ever
    std::optional<QByteArray> body;
    QByteArray type = "text/plain; charset=utf-8";
    VXSimulatorHeaders headers; ///< added to the answer
    VXSimulatorResponse::Fault fault = VXSimulatorResponse::Fault::None;
    qint64 faultAfter = 0;

    /// Reads the JSON form. An error text names the wrong key.
    static std::optional<VXSimulatorBehaviour> fromJson(const QJsonObject& theObject,
                                                        QString* theError);

    [[nodiscard]] bool matches(const VXSimulatorRequest& theRequest) const;
    /// Whether the usual answer is not wanted.
    [[nodiscard]] bool replacesAnswer() const { return status != 0 || body.has_value(); }
    /// The answer that stands for the usual one.
    [[nodiscard]] VXSimulatorResponse answer() const;
    /// Adds delay, headers and fault.
    void applyTo(VXSimulatorResponse& theResponse) const;
};
