#pragma once

/// The kinds of files that are shipped with the application.
enum VXResourceFileTypeEnum : int
{
    ResourceFileCaBundle = 134217728, ///< Further CA certificates, PEM.
};
