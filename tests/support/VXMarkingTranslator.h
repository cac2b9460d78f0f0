#pragma once

#include <QtCore/QString>
#include <QtCore/QTranslator>

/// Marks each text with its context, "[context]text", which shows that it was translated.
class VXMarkingTranslator : public QTranslator
{
    Q_DISABLE_COPY_MOVE(VXMarkingTranslator)

public:
    VXMarkingTranslator() = default;
    ~VXMarkingTranslator() override = default;

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* theContext, const char* theSource, const char*,
                                    int) const override
    {
        return QStringLiteral("[%1]").arg(QString::fromUtf8(theContext)) +
               QString::fromUtf8(theSource);
    }
};
