#pragma once

#include "VXNetworkingErrorSeverity.h"
#include "VXNetworkingExport.h"

#include <QtCore/QAtomicInt>
#include <QtCore/QMap>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QString>

/// The general text for each error severity, for codes without a text of their own. All instances
/// share one table, so an instance is cheap.
///
/// The table is filled at the first look-up, in the language that is active then, and never again.
/// Look-ups may come from any thread.
class VXNETWORKING_EXPORT VXNetworkingErrorSeverityMessageMap : public QObject
{
    Q_OBJECT // for the translation context only
    Q_DISABLE_COPY_MOVE(VXNetworkingErrorSeverityMessageMap)

public:
    /// Fills nothing; the first look-up does.
    explicit VXNetworkingErrorSeverityMessageMap(QObject* theParent = nullptr);
    ~VXNetworkingErrorSeverityMessageMap() override;

    /// The text for theSeverity; theDefaultText when it has none.
    [[nodiscard]] QString message(VXNetworkingErrorSeverity theSeverity,
                                  const QString& theDefaultText) const;

    /// Fills the table if that has not happened yet. message() calls it.
    void initMap() const;

private:
    static QMap<VXNetworkingErrorSeverity, QString> filledMap();

    static QMap<VXNetworkingErrorSeverity, QString> myMessageMap; // written under myInitMutex
    static QMutex myInitMutex;
    static QAtomicInt ourIsFilled; // publishes the complete myMessageMap
};
