#include "VXSampleProblemPanel.h"

#include "VXSampleContext.h"
#include "VXSampleOutcomeView.h"
#include "VXSampleProblems.h"
#include "VXSampleSimulator.h"

#include <VXNetworking/VXNetworkingError.h>

#include <QtCore/QCoreApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QVBoxLayout>

#include <limits>

using namespace Qt::StringLiterals;

VXSampleProblemPanel::VXSampleProblemPanel(VXSampleContext& theContext, QWidget* theParent)
    : VXSamplePanel(tr("Netzwerkprobleme"),
                    tr("Jeder Eintrag führt einen echten Fehler herbei. Die Bibliothek fragt oder "
                       "unterrichtet den Kunden."),
                    theParent)
    , myContext(theContext)
    , myList(new QListWidget(this))
    , myCause(new QPushButton(tr("&Herbeiführen"), this))
{
    fillList();
    myCause->setObjectName(u"causeButton"_s);
    connect(myCause, &QPushButton::clicked, this, &VXSampleProblemPanel::causeSelected);
    connect(myList, &QListWidget::itemActivated, this, &VXSampleProblemPanel::causeSelected);
    content()->addWidget(myList, 2);
    content()->addWidget(myCause, 0, Qt::AlignLeft);
    content()->addLayout(createCodeRow());
    myOutcome = new VXSampleOutcomeView(tr("Noch kein Fehlercode nachgeschlagen."), this);
    content()->addWidget(myOutcome, 1);
}

VXSampleProblemPanel::~VXSampleProblemPanel() = default;

void VXSampleProblemPanel::fillList()
{
    myList->setObjectName(u"problemList"_s);
    myList->setAccessibleName(tr("Netzwerkprobleme"));
    for (const VXSampleProblem& problem : VXSampleProblems::all()) {
        auto* item = new QListWidgetItem(
            QCoreApplication::translate("VXSampleProblems", problem.title), myList);
        item->setData(Qt::UserRole, QString(problem.name));
    }
    myList->setCurrentRow(0);
}

QLayout* VXSampleProblemPanel::createCodeRow()
{
    myCode = new QSpinBox(this);
    myCode->setObjectName(u"codeBox"_s);
    myCode->setRange(0, std::numeric_limits<int>::max());
    myCode->setValue(3503);
    auto* label = new QLabel(tr("Text zum &Fehlercode:"), this);
    label->setBuddy(myCode);
    auto* show = new QPushButton(tr("Nach&schlagen"), this);
    show->setObjectName(u"codeButton"_s);
    connect(show, &QPushButton::clicked, this, &VXSampleProblemPanel::showCode);

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(myCode);
    row->addWidget(show);
    row->addStretch(1);
    return row;
}

void VXSampleProblemPanel::causeSelected()
{
    const QListWidgetItem* const item = myList->currentItem();
    if (!item || !myCause->isEnabled())
        return;
    myCause->setEnabled(false); // an exchange handles events: one problem at a time
    VXSampleProblemScene scene{myContext, window()};
    if (!VXSampleProblems::run(*VXSampleProblems::find(item->data(Qt::UserRole).toString()), scene))
        myOutcome->showText(myContext.simulator.errorText());
    myCause->setEnabled(true);
    Q_EMIT exchanged();
}

void VXSampleProblemPanel::showCode()
{
    const VXNetworkingError error(static_cast<VXNetworkingErrorCode>(myCode->value()));
    myOutcome->showEnd(error, tr("Der Code %1 ist kein Fehler.").arg(myCode->value()), {});
}
