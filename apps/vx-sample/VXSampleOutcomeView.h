#pragma once

#include <QtWidgets/QWidget>

class QLabel;
class QPlainTextEdit;
class VXNetworkingError;

/// How something ended, in words: a line for the user, the technical text, and what came back.
/// Main thread.
class VXSampleOutcomeView : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleOutcomeView)

public:
    /// `theEmptyText` stands there until something has ended.
    explicit VXSampleOutcomeView(const QString& theEmptyText, QWidget* theParent);
    ~VXSampleOutcomeView() override;

    /// `theSuccess` is shown when there was no error, else the error's own German text.
    void showEnd(const VXNetworkingError& theError, const QString& theSuccess,
                 const QString& theBody);

    /// Something that is no exchange: plain text.
    void showText(const QString& theHeadline, const QString& theBody = {});

private:
    QLabel* myHeadline = nullptr; // children of this
    QLabel* myDetails = nullptr;
    QPlainTextEdit* myBody = nullptr;
};
