#include <VXGUIWidgets/VXDialogDriver.h>

#include "VXTestMain.h"

#include <QtWidgets/QApplication>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

class FixedDriver : public VXDialogDriver
{
public:
    explicit FixedDriver(std::optional<VXDialogAnswer> theAnswer)
        : myAnswer(std::move(theAnswer))
    {
    }

    std::optional<VXDialogAnswer> ask(const VXDialogQuestion& theQuestion) override
    {
        lastTitle = theQuestion.title;
        return myAnswer;
    }

    QString lastTitle;

private:
    std::optional<VXDialogAnswer> myAnswer;
};

} // namespace

class tst_VXDialogDriver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VXDialogDriver::setCurrent(nullptr); }

    void withoutADriverNobodyAnswers();
    void theDriverInUseIsAsked();
    void setCurrentReturnsTheDriverBefore();
    void aDestroyedDriverRemovesItself();
};

void tst_VXDialogDriver::withoutADriverNobodyAnswers()
{
    QCOMPARE(VXDialogDriver::current(), nullptr);
    QVERIFY(!VXDialogDriver::askCurrent({}));
}

void tst_VXDialogDriver::theDriverInUseIsAsked()
{
    FixedDriver driver(VXDialogAnswer{QMessageBox::Retry, {}, {}, {}});
    VXDialogDriver::setCurrent(&driver);
    VXDialogQuestion question;
    question.title = u"Frage"_s;

    const auto answer = VXDialogDriver::askCurrent(question);
    QVERIFY(answer);
    QCOMPARE(answer->button, QMessageBox::Retry);
    QCOMPARE(driver.lastTitle, u"Frage"_s);
}

void tst_VXDialogDriver::setCurrentReturnsTheDriverBefore()
{
    FixedDriver first{std::nullopt};
    FixedDriver second{std::nullopt};
    QCOMPARE(VXDialogDriver::setCurrent(&first), nullptr);
    QCOMPARE(VXDialogDriver::setCurrent(&second), &first);
    QCOMPARE(VXDialogDriver::current(), &second);
}

void tst_VXDialogDriver::aDestroyedDriverRemovesItself()
{
    auto driver = std::make_unique<FixedDriver>(std::nullopt);
    VXDialogDriver::setCurrent(driver.get());
    driver.reset();
    QCOMPARE(VXDialogDriver::current(), nullptr);
}

VX_TEST_MAIN(QApplication, tst_VXDialogDriver)

#include "tst_VXDialogDriver.moc"
