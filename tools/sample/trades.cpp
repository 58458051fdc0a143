#include "sample/trades.h"

#include <string>

#include "base/text.h"

namespace vantrel::sample {
namespace {

void put_texts(TradeRecord& trade, const std::string& name, bool reserved) {
  put_field_text(trade.name, name);
  if (reserved) return;
  put_field_text(trade.text_80, "http://www." + name + "/");
  put_field_text(trade.text_200, "nick" + std::to_string(trade.id));
  put_field_text(trade.text_215, "webmaster@" + name);
  put_field_text(trade.text_292, "192.0.2." + std::to_string(trade.id % 256));
  if (trade.id % 6 == 0) put_field_text(trade.text_307, "good partner; asks for more in summer");
  put_field_text(trade.text_848, "group" + std::to_string(trade.id % 4));
}

// So many clicks an hour, less at night, for some hours or for ever (-1).
void set_quota(TradeRecord& trade, std::int32_t clicks, std::int32_t hours) {
  trade.hours_left = hours;
  trade.param_888 = 1;
  for (int hour = 0; hour < static_cast<int>(kHoursPerDay); ++hour) {
    trade.hourly[hour] = hour < 7 ? clicks / 2 : clicks;
  }
}

void boost(TradeRecord& trade, std::int32_t metric, std::int32_t threshold) {
  trade.param_828 = metric;
  trade.param_832 = threshold;
  trade.param_836 = 150;  // percent below the threshold
  trade.param_840 = 90;   // and from it on
}

// Settings by the last digits of the id, so that they meet in different combinations.
void put_settings(TradeRecord& trade, const SampleSize& size) {
  const std::int32_t number = trade.id - static_cast<std::int32_t>(kReservedCount);
  const std::int32_t hourly_clicks = size.hits_per_minute * 60 / size.trades;
  trade.flag_880 = number % 9 == 4 ? 0 : number % 7 == 3 ? 2 : 1;
  if (number % 8 == 1) set_quota(trade, hourly_clicks * 2, number % 16 == 1 ? -1 : 36);
  if (number % 10 == 5) {
    trade.hits_left = 50 + hourly_clicks * 2;
    trade.param_888 = 1;
  }
  if (number % 3 == 0) boost(trade, 1 + number % 5, number % 5 < 3 ? hourly_clicks * 20 : 110);
  if (number % 4 == 2) trade.param_844 = 50 + number % 50;
  if (number % 11 == 7) {
    trade.param_892 = 1 + (number / 11) % 2;
    trade.param_888 = 1;
    trade.hours_left = 72;
  }
}

}  // namespace

std::vector<TradeRecord> make_trades(const Model& model) {
  std::vector<TradeRecord> trades(model.names.size());
  for (std::size_t position = 0; position < trades.size(); ++position) {
    TradeRecord& trade = trades[position];
    make_default_trade(trade);
    trade.id = static_cast<std::int32_t>(position);
    const bool reserved = position < kReservedCount;
    put_texts(trade, model.names[position], reserved);
    if (reserved) {
      trade.flag_880 = 0;  // takes no weight away from the trades
    } else {
      put_settings(trade, model.size);
    }
  }
  // Visitors of the entries for no referrer and for unknown names have a skim of their own.
  trades[3].param_844 = 60;
  trades[6].param_844 = 80;
  return trades;
}

}  // namespace vantrel::sample
