#pragma once

#include "VXRecordedRequest.h"

#include <QtCore/QAbstractTableModel>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtNetwork/QNetworkAccessManager>

class QNetworkReply;

/// What the simulator received, newest last, as a table. It asks the control port with Qt's access
/// manager and not with the library, which is the one being looked at. Main thread.
class VXSampleServiceModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleServiceModel)

public:
    explicit VXSampleServiceModel(QObject* theParent);
    ~VXSampleServiceModel() override;

    /// Asks for what is new; the rows follow later. `thePort` 0: there is no simulator.
    void refresh(quint16 thePort);

    [[nodiscard]] int rowCount(const QModelIndex& theParent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& theParent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& theIndex, int theRole) const override;
    [[nodiscard]] QVariant headerData(int theSection, Qt::Orientation theOrientation,
                                      int theRole) const override;

private:
    void take(QNetworkReply& theReply);

    QNetworkAccessManager myManager;
    QPointer<QNetworkReply> myReply; // one question at a time
    QList<VXRecordedRequest> myRequests;
    int myLastNumber = 0;
};
