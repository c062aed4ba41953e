#pragma once

#include <vector>

#include <QString>

#include <KeloCommunicationLib/Export.h>

/// Kind of a price. The numbering is the service's own; any integer is valid.
enum class PriceType : int
{
};

/// Outcome of applying a voucher. The wording for users is the application's.
enum class VoucherMessage : int
{
    None, ///< no outcome, or one that is not known here
    Msg100,
    Msg101,
    Msg102,
    Msg103,
    Msg104,
    Msg105,
    Msg106,
    Msg107,
    MsgM999
};

/// One item whose price is asked for.
struct KELO_EXPORT PriceInfoRequest
{
    QString articleNumber;
    int quantity = 0;
    int toothNumberStart = 0; ///< first tooth of the item, in FDI two-digit notation: quadrant, then position, as in 36
    int toothNumberEnd = 0;   ///< last tooth of the item, in the same notation
    QString voucherCode;      ///< empty for none
    bool isLocalProductionArticle = false;
};

/// The items whose prices are asked for. Body of POST Orders/simulation.
struct KELO_EXPORT ExtendedPriceInfoRequest
{
    QString installationReference; ///< the account's installation
    std::vector<PriceInfoRequest> orderItems;
};

/// The price of one item. Element of the reply of POST Orders/simulation.
struct KELO_EXPORT PriceInfoResponse
{
    QString articleNumber;
    double articlePrice = 0.0;   ///< in `currency`
    QString originalVoucherCode; ///< the voucher code that the item carried
    int quantity = 0;
    int toothNumberStart = 0; ///< first tooth of the item, in FDI two-digit notation: quadrant, then position, as in 36
    int toothNumberEnd = 0;   ///< last tooth of the item, in the same notation
    double voucherDiscountPrice = 0.0; ///< in `currency`
    QString currency;                  ///< currency code
    PriceType priceType{};             ///< 0, whatever the service sends
    VoucherMessage voucherMessage = VoucherMessage::None;
};
