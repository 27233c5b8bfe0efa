// The limit on how deep evaluation may go.
#pragma once

namespace velsh {

// Counts `weight` levels for a scope. Raises "VELMAR:toodeep" beyond the limit.
class Recursion {
  public:
    explicit Recursion(int weight);
    ~Recursion();
    Recursion(const Recursion&) = delete;
    Recursion& operator=(const Recursion&) = delete;

  private:
    int weight_;
};

} // namespace velsh
