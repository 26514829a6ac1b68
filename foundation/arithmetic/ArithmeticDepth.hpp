// The nesting count that the lexer and the parser keep: raised on entry to each attempt and
// put back on exit, whether the attempt succeeds or not. An attempt that would nest deeper
// than maximumDepth fails, so that no text, however deeply parenthesised or however long a
// chain of operators it holds, can exhaust the stack; such a text evaluates to nothing.
#pragma once

namespace iconwright {

class ArithmeticDepth {
 public:
  /// About 500 levels of parentheses (each level takes four attempts) or a chain of 2,000
  /// operators: far more than a numeric field needs, far less than the stack holds.
  static constexpr int maximumDepth = 2000;

  explicit ArithmeticDepth(int& depth) : depth_(depth), saved_(depth) { ++depth_; }
  ~ArithmeticDepth() { depth_ = saved_; }
  ArithmeticDepth(const ArithmeticDepth&) = delete;
  ArithmeticDepth& operator=(const ArithmeticDepth&) = delete;

  /// True when this attempt lies beyond the limit and has to fail.
  [[nodiscard]] bool tooDeep() const { return depth_ > maximumDepth; }

 private:
  int& depth_;
  int saved_;
};

}  // namespace iconwright
