#include "Faults.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace navorin::demo {

namespace {

struct KindName
{
    std::string_view name;
    FaultKind kind;
    double defaultArgument;
};

constexpr std::array<KindName, 8> kindNames{{
    {"status", FaultKind::Status, 500},
    {"cut", FaultKind::Cut, 0},
    {"stall", FaultKind::Stall, 0},
    {"slow", FaultKind::Slow, 4096},
    {"delay", FaultKind::Delay, 1},
    {"garbage", FaultKind::Garbage, 0},
    {"html", FaultKind::Html, 0},
    {"truncate", FaultKind::Truncate, 0},
}};

bool isPermitted(FaultKind kind, double argument)
{
    if (kind == FaultKind::Status)
        return argument >= 200 && argument <= 599;
    return argument >= 0 && argument <= 1e9 && (kind != FaultKind::Slow || argument >= 1);
}

} // namespace

std::optional<Fault> Fault::parse(std::string_view text)
{
    const std::size_t equals = text.rfind('=');
    if (equals == std::string_view::npos || equals == 0)
        return std::nullopt;
    const std::string_view what = text.substr(equals + 1);
    const std::string_view name = what.substr(0, what.find(':'));
    const auto kind = std::find_if(kindNames.begin(), kindNames.end(),
                                   [name](const KindName &entry) { return entry.name == name; });
    if (kind == kindNames.end())
        return std::nullopt;
    Fault fault{std::string(text.substr(0, equals)), kind->kind, kind->defaultArgument};
    if (name.size() < what.size()) {
        const char *const end = what.data() + what.size();
        const auto [stop, error] = std::from_chars(what.data() + name.size() + 1, end, fault.argument);
        if (error != std::errc() || stop != end)
            return std::nullopt;
    }
    if (!isPermitted(fault.kind, fault.argument))
        return std::nullopt;
    return fault;
}

std::string Fault::toString() const
{
    const auto kindName = std::find_if(kindNames.begin(), kindNames.end(),
                                       [this](const KindName &entry) { return entry.kind == kind; });
    std::array<char, 32> number{};
    const auto written = std::to_chars(number.data(), number.data() + number.size(), argument);
    return prefix + "=" + std::string(kindName->name) + ":" + std::string(number.data(), written.ptr);
}

void Faults::add(const Fault &fault)
{
    remove(fault.prefix);
    const std::lock_guard lock(m_mutex);
    m_faults.push_back(fault);
}

void Faults::remove(std::string_view prefix)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_faults, [prefix](const Fault &f) { return prefix.empty() || f.prefix == prefix; });
}

std::vector<Fault> Faults::list() const
{
    const std::lock_guard lock(m_mutex);
    return m_faults;
}

std::optional<Fault> Faults::strike(std::string_view target)
{
    const std::lock_guard lock(m_mutex);
    Fault *longest = nullptr;
    for (Fault &fault : m_faults) {
        const bool longer = longest == nullptr || fault.prefix.size() > longest->prefix.size();
        if (fault.times != 0 && target.starts_with(fault.prefix) && longer)
            longest = &fault;
    }
    if (longest == nullptr)
        return std::nullopt;
    if (longest->times > 0)
        --longest->times;
    return *longest;
}

} // namespace navorin::demo
