#pragma once

#include "VXNetworkingErrorCode.h"
#include "VXNetworkingExport.h"

#include <QtCore/QAtomicInt>
#include <QtCore/QMap>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QString>

class QImage;

/// The user's text for each error code. All instances share one table, so an instance is cheap.
///
/// The table is filled at the first look-up, in the language that is active then, and never again.
/// Look-ups may come from any thread.
class VXNETWORKING_EXPORT VXNetworkingErrorMessageMap : public QObject
{
    Q_OBJECT // for the translation context only
    Q_DISABLE_COPY_MOVE(VXNetworkingErrorMessageMap)

public:
    /// Fills nothing; the first look-up does.
    explicit VXNetworkingErrorMessageMap(QObject* theParent = nullptr);
    ~VXNetworkingErrorMessageMap() override;

    /// The text for theCode, an HTML fragment; null when the code has no text of its own.
    /// Placeholders ("%1" of TooManyDiscountCoupons, "%2" of ServicesFullyLoaded) stay as they are.
    [[nodiscard]] QString message(VXNetworkingErrorCode theCode) const;

    /// Replaces the text of InvalidLogin: with the name and picture of a retail partner when the
    /// application is the generic one and theLogo is not null, else with the plain text. The text
    /// of InvalidLogin2 stays plain. thePartnerName is HTML.
    ///
    /// Call it in the main thread while no other thread looks anything up.
    void updateInvalidLoginMessage(const QString& thePartnerName, const QImage& theLogo) const;

    /// theImage as an inline PNG, for the "src" of an HTML image. A null image has no bytes.
    [[nodiscard]] QString toBase64DataURL(const QImage& theImage) const;

    /// The whole table in ascending order of the codes, for diagnostics.
    [[nodiscard]] QString messagesDump() const;

    /// Fills the table if that has not happened yet. All that read or change it call this first.
    void initMap() const;

private:
    static QMap<VXNetworkingErrorCode, QString> filledMap();
    static QString plainLoginMessage();
    [[nodiscard]] QString invalidLoginMessage(const QString& thePartnerName,
                                              const QImage& theLogo) const;

    static QMap<VXNetworkingErrorCode, QString> myMessageMap; // filled under myInitMutex
    static QMutex myInitMutex;
    static QAtomicInt ourIsFilled; // publishes the complete myMessageMap
};
