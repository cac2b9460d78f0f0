#pragma once

#include <QtWidgets/QWidget>

class QVBoxLayout;

/// One page of the main window: a headline, what the page is for, and below it what the user can
/// do. Main thread.
class VXSamplePanel : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSamplePanel)

public:
    VXSamplePanel(const QString& theTitle, const QString& theIntroduction, QWidget* theParent);
    ~VXSamplePanel() override;

    [[nodiscard]] QString title() const { return myTitle; }

    /// Ends what the page is waiting for; without such it does nothing.
    virtual void cancel();

    /// The page is under the user's eyes for the first time, or again.
    virtual void activate();

Q_SIGNALS:
    /// An exchange with a service has ended, so its record is worth another look.
    void exchanged();

protected:
    /// Where a page puts its content, below the introduction.
    [[nodiscard]] QVBoxLayout* content() const { return myContent; }

private:
    QString myTitle;
    QVBoxLayout* myContent = nullptr; // this widget's layout
};
