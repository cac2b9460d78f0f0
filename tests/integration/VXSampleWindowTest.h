#pragma once

#include "VXSampleWindowFixture.h"

#include <QtCore/QObject>
#include <QtTest/QTest>

#include <memory>

/// A test of the sample's window: one library and one simulator for all its functions, a new window
/// for each.
class VXSampleWindowTest : public QObject
{
    Q_OBJECT

protected:
    template <typename Widget>
    [[nodiscard]] Widget& part(const QString& theName) const
    {
        return mySample->part<Widget>(theName);
    }

    std::unique_ptr<VXSampleWindowFixture> mySample;

protected Q_SLOTS: // called by Qt Test; no tests
    void initTestCase()
    {
        mySample = std::make_unique<VXSampleWindowFixture>();
        QCOMPARE(mySample->errorText(), QString());
    }
    void cleanupTestCase() { mySample.reset(); }
    void init() { QVERIFY(mySample->open()); }
    void cleanup() { mySample->close(); }
};
