#include "VXTourDialogSteps.h"

#include "VXSampleAnswers.h"
#include "VXSampleContext.h"
#include "VXSamplePreferencesDialog.h"
#include "VXSampleProblems.h"
#include "VXTourRun.h"
#include "VXTourVisitor.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtWidgets/QDialog>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// A problem, the number of its picture, and the titles of its dialogs in their order.
struct Scene
{
    int number;
    QLatin1StringView problem;
    QStringView titles; ///< joined with "|"
};

constexpr std::array scenes{
    Scene{4, "unspecific"_L1, u"Ein Fehler ist aufgetreten (0.1.0)"},
    Scene{5, "remote-system"_L1, u"Ein Fehler ist aufgetreten (0.1.0)"},
    Scene{6, "connection"_L1, u"Ein Fehler ist aufgetreten (0.1.0)"},
    Scene{7, "auto-recover"_L1, u"Einen Moment bitte"},
    Scene{8, "payment"_L1, u"Ein Fehler ist aufgetreten (0.1.0)"},
    Scene{9, "user-input"_L1, u"Ein Fehler ist aufgetreten (0.1.0)"},
    Scene{10, "login-wait"_L1, u"Ein Fehler ist aufgetreten (0.1.0)"},
    Scene{11, "up-to-date"_L1, u"Fertig"},
    Scene{11, "update-failed"_L1, u"Achtung"},
    Scene{11, "phase-out"_L1, u"Diese Software wird nicht mehr unterstützt."},
    Scene{11, "restart"_L1, u"Die Software muss neu gestartet werden. "},
    Scene{12, "tls-question"_L1, u"SSL Fehler"},
    Scene{12, "tls-warning"_L1, u"SSL Fehler|SSL Fehler"},
    Scene{13, "server-login"_L1, u"Anmeldung erforderlich"},
    Scene{13, "proxy-login"_L1, u"Anmeldung erforderlich"},
};

/// While it lives, dialogs appear instead of being answered from a list.
class UserIsThere
{
    Q_DISABLE_COPY_MOVE(UserIsThere)

public:
    explicit UserIsThere(VXSampleAnswers& theAnswers)
        : myAnswers(theAnswers)
    {
        myAnswers.setUserIsThere(true);
    }
    ~UserIsThere() { myAnswers.setUserIsThere(false); }

private:
    VXSampleAnswers& myAnswers;
};

QString pictureName(int theNumber, const QString& theName)
{
    return u"%1-%2.png"_s.arg(QString::number(theNumber).rightJustified(2, u'0'), theName);
}

void showProblem(VXTourRun& theRun, const Scene& theScene)
{
    const UserIsThere user(theRun.world.answers);
    int count = 0;
    const VXTourVisitor visitor([&](QDialog* theDialog) {
        const QString suffix = count == 0 ? QString() : u"-%1"_s.arg(count + 1);
        ++count;
        theRun.photograph(theDialog, pictureName(theScene.number, theScene.problem + suffix));
        VXTourVisitor::leave(theDialog);
    });
    VXSampleProblemScene scene{theRun.world.context, nullptr};
    theRun.expect(VXSampleProblems::run(*VXSampleProblems::find(theScene.problem), scene),
                  u"the problem did not come about"_s);
    theRun.expectEqual<QString>(u"titles"_s, visitor.titles().join(u'|'),
                                theScene.titles.toString());
    theRun.came(visitor.titles().join(u", "_s));
}

void showPreferences(VXTourRun& theRun)
{
    const VXTourVisitor visitor([&](QDialog* theDialog) {
        theRun.photograph(theDialog, pictureName(14, u"preferences"_s));
        theDialog->reject();
    });
    VXSamplePreferencesDialog().exec();
    theRun.expectEqual<QString>(u"titles"_s, visitor.titles().join(u'|'),
                                u"Netzwerkeinstellungen"_s);
    theRun.came(visitor.titles().join(u", "_s));
}

} // namespace

QList<VXTourStep> VXTourDialogSteps::steps()
{
    QList<VXTourStep> steps;
    for (const Scene& scene : scenes) {
        steps << VXTourStep{u"dialogs"_s, u"Dialog: %1"_s.arg(scene.problem),
                            [&scene](VXTourRun& theRun) { showProblem(theRun, scene); }};
    }
    steps << VXTourStep{u"dialogs"_s, u"Dialog: network preferences"_s, showPreferences};
    return steps;
}
