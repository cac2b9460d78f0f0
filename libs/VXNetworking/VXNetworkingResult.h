#pragma once

#include "VXNetworkingError.h"
#include "VXNetworkingExport.h"

#include <QtCore/QString>
#include <QtXml/QDomDocument>

class QFileInfo;

/// What a request of the XML order protocol hands back: the answer document and its error.
///
/// Of the document only its last child node is read, as everywhere in the order protocol: with a
/// comment after the root element an answer has neither head nor content. A value; copies share
/// the document's tree, which only one thread at a time may use.
class VXNETWORKING_EXPORT VXNetworkingResult
{
public:
    /// Nobody filled the result in yet: no document, error NotExecuted.
    VXNetworkingResult() = default;

    /// Keeps the answer and takes over the error of its head, if there is one.
    VXNetworkingResult(const QDomDocument& theAnswer);

    /// No document and this error. NoError gives an empty document instead of none: success
    /// without a payload.
    VXNetworkingResult(VXNetworkingErrorCode theCode);

    ///@{
    /// The document is explicitly shared: a change of its nodes shows in every copy.
    VXNetworkingResult(const VXNetworkingResult&) = default;
    VXNetworkingResult(VXNetworkingResult&&) noexcept = default;
    VXNetworkingResult& operator=(const VXNetworkingResult&) = default;
    VXNetworkingResult& operator=(VXNetworkingResult&&) noexcept = default;
    ///@}

    virtual ~VXNetworkingResult();

    /// A copy; raiseError() changes the one in here.
    [[nodiscard]] VXNetworkingError error() const { return myError; }

    /// That of error(); NotExecuted until somebody filled the result in.
    [[nodiscard]] VXNetworkingErrorCode errorCode() const { return myError.errorCode(); }

    /// Judged by severity: informational codes are no errors.
    [[nodiscard]] bool errorOccurred() const { return myError.errorOccurred(); }

    /// True without a document, or when an error occurred.
    [[nodiscard]] bool isAbortSituation() const;

    /// The opposite of isAbortSituation(): a document and no error.
    [[nodiscard]] bool isSuccess() const { return !isAbortSituation(); }

    /// The element "content" of the answer; null when absent. Check it also after success.
    [[nodiscard]] QDomElement contentNode() const;

    /// The attribute "server_timestamp" of the answer's last element; empty when absent.
    [[nodiscard]] QString serverTimeStamp() const;

    /// The whole document, indented by 1; empty when there is none.
    [[nodiscard]] QString documentToString() const;

    /// Replaces the error; the document stays.
    void raiseError(VXNetworkingErrorCode theCode);

    /// Raises what VXNetworkingError::checkFileError() finds, if anything.
    void raiseFileError(const QFileInfo& theFile);

    /// Writes the content element as an XML document in UTF-8; nothing in an abort situation or
    /// without content. A file of that name keeps its former content until the new one is complete.
    /// VXPlatformIndependent::fileWritten() is called after it.
    ///
    /// A failure is logged and raised by raiseFileError(). That looks at folder, existence and size
    /// only, so a write-protected file with content leaves no error, on purpose.
    void saveContentToFile(const QFileInfo& theFile);

private:
    [[nodiscard]] bool writeContent(const QString& thePath) const;

    QDomDocument myDocument;
    VXNetworkingError myError{NotExecuted};
};
