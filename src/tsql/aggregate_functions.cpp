// Aggregates. Nulls are skipped; a group of nulls alone gives null.
#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tsql/convert.h"
#include "tsql/function_groups.h"
#include "tsql/sql_error.h"
#include "tsql/unicode.h"

namespace tolvane::tsql {
namespace {

// The only value of a sub-query used as a value.
class Single : public AggregateState {
 public:
  void step(Call& call) override {
    if (found_) throw SqlError(Message::SubqueryManyRows);
    found_ = true;
    value_ = Result(call.args[0]);
  }
  Result finish() override { return value_; }

 private:
  bool found_ = false;
  Result value_;
};

// Sum and count of value[, packed type of the value]. Without a type the storage decides: integers add up in 64 bits,
// texts as exact numbers of the greatest scale met.
//
// A third argument says that rows leave the window again: floats are kept then, because taking one away from a sum
// leaves a trace of it.
class Total : public AggregateState {
 public:
  void step(Call& call) override {
    const Datum& value = call.args[0];
    if (value.isNull()) return;
    if (call.args.size() > 1) type_ = Type::unpack(call.args[1].integer());
    ++count_;
    if (value.kind() == Kind::Real || (type_ && type_->isFloat())) {
      isFloat_ = true;
      const double number = approximateNumber(value);
      if (call.args.size() > 2) {
        kept_.push_back(number);
      } else {
        float_ += number;
      }
    } else if (value.kind() == Kind::Integer) {
      if (__builtin_add_overflow(integer_, value.integer(), &integer_)) overflow();
    } else {
      const Decimal number = exactNumber(value);
      isExact_ = true;
      const auto sum = Decimal::sum(exact_, number, std::max(exact_.scale(), number.scale()));
      if (!sum) overflow();
      exact_ = *sum;
    }
  }

  void leave(Call& call) override {
    const Datum& value = call.args[0];
    if (value.isNull()) return;
    --count_;
    if (!kept_.empty()) {
      kept_.pop_front();
    } else if (value.kind() == Kind::Integer) {
      integer_ -= value.integer();
    } else {
      const Decimal number = exactNumber(value);
      const auto rest = Decimal::sum(exact_, number.negated(), exact_.scale());
      if (!rest) overflow();
      exact_ = *rest;
    }
  }

 protected:
  // The type of sum or average of numbers of the argument's type.
  [[nodiscard]] Type resultType(int leastScale) const {
    if (!type_) {
      if (isFloat_) return Type::of(TypeKind::Float);
      return isExact_ ? Type::decimal(Decimal::maxPrecision, std::max(exact_.scale(), leastScale))
                      : Type::of(TypeKind::BigInt);
    }
    if (type_->isFloat()) return Type::of(TypeKind::Float);
    if (type_->isMoney()) return Type::of(TypeKind::Money);
    if (type_->kind == TypeKind::Decimal) {
      return Type::decimal(Decimal::maxPrecision, std::max(int{type_->scale}, leastScale));
    }
    return Type::of(type_->kind == TypeKind::BigInt ? TypeKind::BigInt : TypeKind::Int);
  }

  [[noreturn]] void overflow() const {
    throw SqlError(Message::ArithmeticOverflow, {"expression", messageName(resultType(0))});
  }

  [[nodiscard]] std::int64_t count() const { return count_; }
  [[nodiscard]] double floatSum() const {
    const double kept = std::accumulate(kept_.begin(), kept_.end(), 0.0);
    return kept + float_ + static_cast<double>(integer_) + exact_.toDouble();
  }
  [[nodiscard]] std::int64_t integerSum() const { return integer_; }
  [[nodiscard]] Decimal exactSum() const {
    const auto sum = Decimal::sum(exact_, Decimal(integer_), exact_.scale());
    if (!sum) overflow();
    return *sum;
  }

  Result checked(double value) const {
    if (!std::isfinite(value)) overflow();
    return value;
  }

  Result checked(std::int64_t value, const Type& type) const {
    if (!fitsInteger(value, type.kind)) overflow();
    return value;
  }

 private:
  std::optional<Type> type_;
  std::int64_t count_ = 0;
  std::int64_t integer_ = 0;
  double float_ = 0;
  std::deque<double> kept_;
  Decimal exact_;
  bool isFloat_ = false;
  bool isExact_ = false;
};

class Sum : public Total {
 public:
  Result finish() override {
    if (count() == 0) return {};
    const Type type = resultType(0);
    if (type.isFloat()) return checked(floatSum());
    if (type.isExactText()) return exactText(exactSum(), type, "expression");
    return checked(integerSum(), type);
  }
};

// The average of whole numbers is a whole number, of decimals one with six decimals at least; both are cut.
class Average : public Total {
 public:
  Result finish() override {
    constexpr int leastScale = 6;
    if (count() == 0) return {};
    const Type type = resultType(leastScale);
    if (type.isFloat()) return checked(floatSum() / static_cast<double>(count()));
    if (!type.isExactText()) return checked(integerSum() / count(), type);
    const auto average = Decimal::quotient(exactSum(), Decimal(count()), type.isMoney() ? 4 : type.scale);
    if (!average) overflow();
    return exactText(*average, type, "expression");
  }
};

// Variance by the sums of the values and of their squares, as SQL Server has it to the last digit.
class Spread : public AggregateState {
 public:
  Spread(bool ofPopulation, bool root) : ofPopulation_(ofPopulation), root_(root) {}

  void step(Call& call) override {
    if (call.args[0].isNull()) return;
    const double value = approximateNumber(call.args[0]);
    if (call.args.size() > 1) kept_.push_back(value);
    add(value);
  }

  // The sums are made anew: taking a square away from them leaves a trace of it.
  void leave(Call& call) override {
    if (call.args[0].isNull() || kept_.empty()) return;
    kept_.pop_front();
    count_ = sum_ = squares_ = 0;
    for (const double value : kept_) add(value);
  }

  Result finish() override {
    const double divisor = ofPopulation_ ? count_ : count_ - 1;
    if (divisor < 1) return {};
    const double variance = std::max(0.0, (squares_ - sum_ * sum_ / count_) / divisor);
    const double result = root_ ? std::sqrt(variance) : variance;
    if (!std::isfinite(result)) throw SqlError(Message::ArithmeticOverflow, {"expression", "float"});
    return result;
  }

 private:
  void add(double value) {
    count_ += 1;
    sum_ += value;
    squares_ += value * value;
  }

  bool ofPopulation_;
  bool root_;
  std::deque<double> kept_;
  double count_ = 0;
  double sum_ = 0;
  double squares_ = 0;
};

// The order of two values of one type, nulls first.
int compareKeys(const Datum& left, const Datum& right, const Type& type, const Collation& collation) {
  if (left.isNull() || right.isNull()) return static_cast<int>(right.isNull()) - static_cast<int>(left.isNull());
  if (type.isText()) return collation.compare(left.text(), right.text());
  if (type.isExactText()) {
    const auto order = exactNumber(left).compare(exactNumber(right));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
  }
  if (type.isFloat()) {
    const double a = approximateNumber(left);
    const double b = approximateNumber(right);
    return a < b ? -1 : a > b ? 1 : 0;
  }
  if (left.kind() == Kind::Integer)
    return left.integer() < right.integer() ? -1 : left.integer() > right.integer() ? 1 : 0;
  if (left.kind() == Kind::Text) return left.text().compare(right.text());
  const auto order = std::lexicographical_compare_three_way(left.blob().begin(), left.blob().end(),
                                                            right.blob().begin(), right.blob().end());
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

// Texts with separators between them, in the order of their keys if there are any.
class Joined : public AggregateState {
 public:
  void step(Call& call) override {
    collation_ = &call.collation;
    type_ = Type::unpack(call.args[2].integer());
    if (call.args[0].isNull()) return;
    Row row{std::string(call.args[0].text()), {}, {}};
    if (!call.args[1].isNull()) row.separator = call.args[1].text();
    keys_.clear();
    for (std::size_t i = 3; i + 2 < call.args.size(); i += 3) {
      row.values.emplace_back(call.args[i]);
      keys_.push_back({Type::unpack(call.args[i + 1].integer()), call.args[i + 2].integer() != 0});
    }
    rows_.push_back(std::move(row));
  }

  Result finish() override {
    if (rows_.empty()) return {};
    std::stable_sort(rows_.begin(), rows_.end(), [this](const Row& a, const Row& b) { return before(a, b); });
    std::string text;
    for (const Row& row : rows_) {
      if (&row != rows_.data()) text += row.separator;
      text += row.text;
    }
    if (type_.length != maxLength && bytes(text) > 8000) {
      throw SqlError(9829, 16,
                     "STRING_AGG aggregation result exceeded the limit of 8000 bytes. Use LOB types to avoid result "
                     "truncation.");
    }
    return text;
  }

 private:
  struct Row {
    std::string text;
    std::string separator;
    std::vector<Result> values;
  };
  struct Key {
    Type type;
    bool descending;
  };

  [[nodiscard]] bool before(const Row& a, const Row& b) const {
    for (std::size_t i = 0; i < keys_.size(); ++i) {
      const int order = compareKeys(a.values[i].datum(), b.values[i].datum(), keys_[i].type, *collation_);
      if (order != 0) return (order < 0) != keys_[i].descending;
    }
    return false;
  }

  [[nodiscard]] std::size_t bytes(const std::string& text) const {
    if (!type_.isUnicode()) return collation_->toCodePage(text).size();
    std::size_t units = 0;
    for (std::size_t i = 0; i < text.size();) units += nextCharacter(text, i) > 0xFFFF ? 2 : 1;
    return units * 2;
  }

  const Collation* collation_ = nullptr;
  Type type_;
  std::vector<Key> keys_;
  std::vector<Row> rows_;
};

template <typename State>
std::unique_ptr<AggregateState> create() {
  return std::make_unique<State>();
}
template <bool ofPopulation, bool root>
std::unique_ptr<AggregateState> createSpread() {
  return std::make_unique<Spread>(ofPopulation, root);
}

constexpr std::array aggregates{
    Aggregate{"ts_single", 1, create<Single>},
    Aggregate{"ts_string_agg", -1, create<Joined>},
    Aggregate{"ts_sum", -1, create<Sum>},
    Aggregate{"ts_avg", -1, create<Average>},
    Aggregate{"ts_stdev", -1, createSpread<false, true>},
    Aggregate{"ts_stdevp", -1, createSpread<true, true>},
    Aggregate{"ts_var", -1, createSpread<false, false>},
    Aggregate{"ts_varp", -1, createSpread<true, false>},
};

}  // namespace

void AggregateState::leave(Call& /*call*/) {
  throw SqlError(notSupportedNumber, 16, "A moving window of this aggregate is not supported.");
}

std::span<const Aggregate> aggregateFunctions() {
  return aggregates;
}

}  // namespace tolvane::tsql
