#pragma once

#include <array>
#include <vector>

namespace simulator
{

struct Route;

/// What a price simulation says to a voucher: the text of "VoucherMessage" (empty: there is none) and how much of the
/// price "VoucherDiscountPrice" takes off. What a message means is the caller's affair; the codes are only named so
/// that they can be remembered.
struct Voucher
{
    char const* code;
    char const* message;
    int percentOff;
};

constexpr std::array<Voucher, 11> vouchers = {{
    {"", "", 0}, // no voucher
    {"SMILE10", "", 10},
    {"SMILE50", "MSG_VOUCHER_100", 50},
    {"UNKNOWN", "MSG_VOUCHER_101", 0}, // and every code that is not in this table
    {"EXPIRED", "MSG_VOUCHER_102", 0},
    {"NOTYET", "MSG_VOUCHER_103", 0},
    {"REDEEMED", "MSG_VOUCHER_104", 0},
    {"ARTICLE", "MSG_VOUCHER_105", 0},
    {"ACCOUNT", "MSG_VOUCHER_106", 0},
    {"QUANTITY", "MSG_VOUCHER_107", 0},
    {"BROKEN", "MSG_VOUCHER_M999", 0},
}};

/// The price simulation: one price per item, in the order of the items, of one piece and in euros. An article costs its
/// list price ("PriceType" 1), from local production three fifths of it ("PriceType" 2).
std::vector<Route> priceRoutes();

} // namespace simulator
