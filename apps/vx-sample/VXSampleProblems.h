#pragma once

#include <QtCore/QLatin1StringView>
#include <QtCore/QString>

#include <span>

class QWidget;
class VXNetworkingError;
struct VXSampleContext;

/// Where a network problem happens. Main thread.
struct VXSampleProblemScene
{
    VXSampleContext& context;
    QWidget* window; ///< parent of dialogs that take one; may be null
};

/// One network problem that the user can bring about.
struct VXSampleProblem
{
    QLatin1StringView name;
    const char* title; ///< German; the context of its translation is VXSampleProblems
    void (*run)(VXSampleProblemScene& theScene);
};

/// Network problems from real errors: each does an exchange with the simulator, or with a port
/// where nobody listens, and lets the mediator tell the user about what came of it.
class VXSampleProblems
{
public:
    static std::span<const VXSampleProblem> all();

    /// The problem of that name, or null.
    static const VXSampleProblem* find(const QString& theName);

    /// Brings the problem about; an event tells how it ended. False, and the user is told, when
    /// the simulator is not there.
    static bool run(const VXSampleProblem& theProblem, VXSampleProblemScene& theScene);
};
