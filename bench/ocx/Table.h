#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kw::bench {

double Now();  // in milliseconds

// A part of a row's work, as it takes when it is done alone.
struct Part {
  std::string name;
  double milliseconds = 0;
};

// The times of one row.
class Times {
public:
  // True if no other was as short.
  bool Add(double milliseconds);
  double Least() const;
  // The shortest, the middle and the longest; then, in the next line, the parts, their sum and what the shortest takes
  // beyond it.
  void Print(const std::string& name, const std::vector<Part>& parts = {}) const;

private:
  std::vector<double> all;
};

// The times of `count` runs. `prepare` is not measured.
Times TimesOf(int count, const std::function<void()>& work, const std::function<void()>& prepare = {});
void Measure(const std::string& name, int count, const std::function<void()>& work,
             const std::function<void()>& prepare = {});
void PrintHead(const std::string& section);

}  // namespace kw::bench
