// The nesting count that the lexer and the parser keep: raised on entry to each attempt and
// put back on exit, whether the attempt succeeds or not. It imposes no limit.
#pragma once

namespace iconwright {

class ArithmeticDepth {
 public:
  explicit ArithmeticDepth(int& depth) : depth_(depth), saved_(depth) { ++depth_; }
  ~ArithmeticDepth() { depth_ = saved_; }
  ArithmeticDepth(const ArithmeticDepth&) = delete;
  ArithmeticDepth& operator=(const ArithmeticDepth&) = delete;

 private:
  int& depth_;
  int saved_;
};

}  // namespace iconwright
