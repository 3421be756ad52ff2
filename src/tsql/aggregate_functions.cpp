// Aggregates. Nulls are skipped; a group of nulls alone gives null.
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

#include "tsql/convert.h"
#include "tsql/function_groups.h"
#include "tsql/sql_error.h"

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
class Total : public AggregateState {
 public:
  void step(Call& call) override {
    const Datum& value = call.args[0];
    if (value.isNull()) return;
    if (call.args.size() > 1) type_ = Type::unpack(call.args[1].integer());
    ++count_;
    if (value.kind() == Kind::Real || (type_ && type_->isFloat())) {
      isFloat_ = true;
      float_ += approximateNumber(value);
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
  [[nodiscard]] double floatSum() const { return float_ + static_cast<double>(integer_) + exact_.toDouble(); }
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
    count_ += 1;
    sum_ += value;
    squares_ += value * value;
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
  bool ofPopulation_;
  bool root_;
  double count_ = 0;
  double sum_ = 0;
  double squares_ = 0;
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
    Aggregate{"ts_sum", -1, create<Sum>},
    Aggregate{"ts_avg", -1, create<Average>},
    Aggregate{"ts_stdev", 1, createSpread<false, true>},
    Aggregate{"ts_stdevp", 1, createSpread<true, true>},
    Aggregate{"ts_var", 1, createSpread<false, false>},
    Aggregate{"ts_varp", 1, createSpread<true, false>},
};

}  // namespace

std::span<const Aggregate> aggregateFunctions() {
  return aggregates;
}

}  // namespace tolvane::tsql
