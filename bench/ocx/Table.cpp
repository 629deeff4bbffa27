#include "bench/ocx/Table.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>

namespace kw::bench {

double Now() {
  LARGE_INTEGER now = {};
  LARGE_INTEGER second = {};
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&second);
  return 1000.0 * static_cast<double>(now.QuadPart) / static_cast<double>(second.QuadPart);
}

bool Times::Add(double milliseconds) {
  const bool isShortest = all.empty() || milliseconds < Least();
  all.push_back(milliseconds);
  return isShortest;
}

double Times::Least() const { return *std::ranges::min_element(all); }

void Times::Print(const std::string& name, const std::vector<Part>& parts) const {
  std::vector<double> sorted = all;
  std::ranges::sort(sorted);
  std::printf("%-36s %9.2f %9.2f %9.2f\n", name.c_str(), sorted.front(), sorted[sorted.size() / 2], sorted.back());
  double sum = 0;
  for (const Part& part : parts) {
    std::printf("%s%s %.2f", sum == 0 ? "    " : " + ", part.name.c_str(), part.milliseconds);
    sum += part.milliseconds;
  }
  if (!parts.empty()) std::printf(" = %.2f, other %.2f\n", sum, sorted.front() - sum);
  std::fflush(stdout);
}

Times TimesOf(int count, const std::function<void()>& work, const std::function<void()>& prepare) {
  Times times;
  for (int i = 0; i < count; ++i) {
    if (prepare) prepare();
    const double begin = Now();
    work();
    times.Add(Now() - begin);
  }
  return times;
}

void Measure(const std::string& name, int count, const std::function<void()>& work,
             const std::function<void()>& prepare) {
  TimesOf(count, work, prepare).Print(name);
}

void PrintHead(const std::string& section) {
  std::printf("\n%-36s %9s %9s %9s\n", (section + ", in ms").c_str(), "least", "middle", "most");
  std::fflush(stdout);
}

}  // namespace kw::bench
