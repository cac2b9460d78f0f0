#pragma once

#include <QtCore/QTemporaryDir>

/// A private home for one test program: HOME and the XDG folders lie in a temporary folder that
/// vanishes with this object, and no proxy variable of the caller reaches the test.
///
/// Make it before the application object; Qt reads the environment there.
class VXTestEnvironment
{
    Q_DISABLE_COPY_MOVE(VXTestEnvironment)

public:
    VXTestEnvironment();
    ~VXTestEnvironment();

private:
    QTemporaryDir myHome;
};
