#pragma once

#include <QtCore/QMutex>
#include <QtCore/QRegularExpression>
#include <QtCore/QString>

/// A regular expression that several threads may use at once, also as a static object.
///
/// Wholly in the header, so that each library that uses it holds its own code of it.
class VXRegularExpression
{
    Q_DISABLE_COPY_MOVE(VXRegularExpression)

public:
    /// An unusable pattern is no error here; ask isValid().
    explicit VXRegularExpression(const QString& thePattern,
                                 QRegularExpression::PatternOptions theOptions = {})
        : myExpression(thePattern, theOptions)
    {
    }

    /// False when the pattern is no regular expression; nothing matches it then.
    [[nodiscard]] bool isValid() const { return myExpression.isValid(); }

    /// As QRegularExpression::match(). The pattern is compiled on the first call.
    [[nodiscard]] QRegularExpressionMatch
    match(const QString& theSubject, qsizetype theOffset = 0,
          QRegularExpression::MatchType theType = QRegularExpression::NormalMatch,
          QRegularExpression::MatchOptions theOptions = QRegularExpression::NoMatchOption) const
    {
        const QMutexLocker locker(&myMutex);
        return myExpression.match(theSubject, theOffset, theType, theOptions);
    }

private:
    mutable QMutex myMutex;
    const QRegularExpression myExpression;
};
