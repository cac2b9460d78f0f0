#include <VXNetworking/VXEnumWrapper.h>

#include "VXFlagFixture.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <barrier>
#include <thread>
#include <type_traits>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// Forbids a flag, whatever way it comes in.
class ReadOnlyFlag : public VXFlag
{
public:
    using VXFlag::expandTo;
    using VXFlag::VXFlag;

    void expandTo(VXFlagEnum theValue) override
    {
        VXFlag::expandTo(static_cast<VXFlagEnum>(theValue & ~FlagWrite));
    }
};

} // namespace

class tst_VXEnumWrapper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void threadsFillTheTableOnce(); // first: the table of the process is still unused
    void theLibraryAndTheHostShareOneTable();
    void theDefaultIsZeroAndInvalid();
    void itConvertsFromAValue();
    void orderIsThatOfSignedInts();
    void equalityWithWrapperAndValue();
    void flagsAreCombinedInPlace();
    void flagsAreCombinedIntoAnInt();
    void excludeRemovesFlags();
    void expandToAddsFlags();
    void expandToOfAWrapperUsesTheOverride();
    void reduceToKeepsOnlyTheFlags();
    void reducedToChangesNothing();
    void aValueEncodes();
    void combinedAndUnknownValuesHaveNoText();
    void textsDecodeWhateverTheirCase();
};

void tst_VXEnumWrapper::threadsFillTheTableOnce()
{
    constexpr int count = 8;
    QCOMPARE(VXFlag::fillings(), 0);
    std::barrier start(count);
    std::vector<QString> texts(count);
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&start, &texts, i] {
            start.arrive_and_wait();
            texts[i] = VXFlag(FlagRun).encode();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const QString& text : texts)
        QCOMPARE(text, u"Run"_s);
    QCOMPARE(VXFlag::fillings(), 1);
}

void tst_VXEnumWrapper::theLibraryAndTheHostShareOneTable()
{
    const void* table = VXFlag().enumToStringTable();
    QVERIFY(table != nullptr);
    QCOMPARE(tableInTheLibrary(), table);
    QCOMPARE(encodedInTheLibrary(FlagWrite), u"Write"_s);
    QCOMPARE(VXFlag::fillings(), 1);
}

void tst_VXEnumWrapper::theDefaultIsZeroAndInvalid()
{
    static_assert(std::has_virtual_destructor_v<VXEnumWrapper<VXFlagEnum>>);
    static_assert(std::is_abstract_v<VXEnumWrapper<VXFlagEnum>>);
    QCOMPARE(static_cast<int>(VXFlag().value()), 0);
    QVERIFY(!VXFlag().isValid());
    QVERIFY(VXFlag(FlagRun).isValid());
}

void tst_VXEnumWrapper::itConvertsFromAValue()
{
    const VXFlag flag = FlagWrite;
    QCOMPARE(static_cast<int>(flag.value()), 2);
}

void tst_VXEnumWrapper::orderIsThatOfSignedInts()
{
    const VXFlag small(FlagRead);
    const VXFlag large(FlagRun);
    const VXFlag negative(static_cast<VXFlagEnum>(-1));
    QVERIFY(small < large);
    QVERIFY(!(large < small));
    QVERIFY(!(small < small));
    QVERIFY(small <= large);
    QVERIFY(small <= small);
    QVERIFY(!(large <= small));
    QVERIFY(large > small);
    QVERIFY(!(small > small));
    QVERIFY(negative < small);
}

void tst_VXEnumWrapper::equalityWithWrapperAndValue()
{
    const VXFlag flag(FlagRead);
    QVERIFY(flag == VXFlag(FlagRead));
    QVERIFY(flag == FlagRead);
    QVERIFY(!(flag == VXFlag(FlagRun)));
    QVERIFY(!(flag == FlagRun));
    QVERIFY(flag != VXFlag(FlagRun));
    QVERIFY(flag != FlagRun);
    QVERIFY(!(flag != VXFlag(FlagRead)));
    QVERIFY(!(flag != FlagRead));
}

void tst_VXEnumWrapper::flagsAreCombinedInPlace()
{
    VXFlag flag(FlagRead);
    flag |= VXFlag(FlagWrite);
    QCOMPARE(static_cast<int>(flag.value()), 3);
    flag |= FlagRun;
    QCOMPARE(static_cast<int>(flag.value()), 7);
    flag &= static_cast<VXFlagEnum>(6);
    QCOMPARE(static_cast<int>(flag.value()), 6);
    flag &= VXFlag(FlagRun);
    QCOMPARE(static_cast<int>(flag.value()), 4);
}

void tst_VXEnumWrapper::flagsAreCombinedIntoAnInt()
{
    const VXFlag left(static_cast<VXFlagEnum>(3));
    const VXFlag right(static_cast<VXFlagEnum>(6));
    QCOMPARE(left & right, 2);
    QCOMPARE(left | right, 7);
    QCOMPARE(static_cast<int>(left.value()), 3);
}

void tst_VXEnumWrapper::excludeRemovesFlags()
{
    VXFlag flag(static_cast<VXFlagEnum>(7));
    flag.exclude(FlagWrite);
    QCOMPARE(static_cast<int>(flag.value()), 5);
    flag.exclude(VXFlag(static_cast<VXFlagEnum>(6)));
    QCOMPARE(static_cast<int>(flag.value()), 1);
}

void tst_VXEnumWrapper::expandToAddsFlags()
{
    VXFlag flag(FlagRead);
    flag.expandTo(FlagWrite);
    QCOMPARE(static_cast<int>(flag.value()), 3);
    flag.expandTo(VXFlag(FlagRun));
    QCOMPARE(static_cast<int>(flag.value()), 7);
}

void tst_VXEnumWrapper::expandToOfAWrapperUsesTheOverride()
{
    ReadOnlyFlag flag(FlagRead);
    flag.expandTo(VXFlag(static_cast<VXFlagEnum>(6)));
    QCOMPARE(static_cast<int>(flag.value()), 5);
}

void tst_VXEnumWrapper::reduceToKeepsOnlyTheFlags()
{
    VXFlag flag(static_cast<VXFlagEnum>(7));
    flag.reduceTo(static_cast<VXFlagEnum>(5));
    QCOMPARE(static_cast<int>(flag.value()), 5);
}

void tst_VXEnumWrapper::reducedToChangesNothing()
{
    const VXFlag flag(static_cast<VXFlagEnum>(7));
    QCOMPARE(static_cast<int>(flag.reducedTo(static_cast<VXFlagEnum>(10))), 2);
    QCOMPARE(static_cast<int>(flag.value()), 7);
}

void tst_VXEnumWrapper::aValueEncodes()
{
    QCOMPARE(VXFlag(FlagRead).encode(), u"Read"_s);
    QCOMPARE(VXFlag(FlagRun).encode(), u"Run"_s);
}

void tst_VXEnumWrapper::combinedAndUnknownValuesHaveNoText()
{
    QVERIFY(VXFlag(static_cast<VXFlagEnum>(3)).encode().isEmpty());
    QVERIFY(VXFlag(static_cast<VXFlagEnum>(-1)).encode().isEmpty());
    QVERIFY(VXFlag().encode().isEmpty());
}

void tst_VXEnumWrapper::textsDecodeWhateverTheirCase()
{
    QVERIFY(VXFlag().decode(u"WRITE"_s) == FlagWrite);
    QVERIFY(VXFlag(FlagRun).decode(u"read"_s) == FlagRead);
    QVERIFY(VXFlag(FlagRun).decode(u"fly"_s) == FlagNone);
}

VX_TEST_MAIN(QCoreApplication, tst_VXEnumWrapper)

#include "tst_VXEnumWrapper.moc"
