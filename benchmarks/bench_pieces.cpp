// The pieces of the capture analysis.
#include "capturetexts.h"
#include "healthcheck.h"
#include "wallclock.h"

#include <benchmark/benchmark.h>

#include <ptpv2parser/ptpv2parser.h>

#include <QtCore/QDateTime>
#include <QtCore/QLoggingCategory>

#include <array>

namespace {

constexpr qint64 kStart = 1'700'000'000'000;
constexpr int kRecords = 50'000;

void textByQt(benchmark::State &state)
{
    qint64 at = kStart;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(QDateTime::fromMSecsSinceEpoch(at += 7).toString(analysis::WallClock::format()));
}
BENCHMARK(textByQt);

void textByWallClock(benchmark::State &state)
{
    analysis::WallClock clock;
    qint64 at = kStart;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(clock.text(at += 7));
}
BENCHMARK(textByWallClock);

void parseByQt(benchmark::State &state)
{
    const QString text = QStringLiteral("2026-11-20 10:11:12.345");
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(QDateTime::fromString(text, analysis::WallClock::format()).toMSecsSinceEpoch());
}
BENCHMARK(parseByQt);

void parseByWallClock(benchmark::State &state)
{
    analysis::WallClock clock;
    const QString text = QStringLiteral("2026-11-20 10:11:12.345");
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(clock.parse(text));
}
BENCHMARK(parseByWallClock);

void rereadWithinAMinute(benchmark::State &state)
{
    analysis::WallClock clock;
    qint64 at = kStart;
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(clock.reread(at += 7));
}
BENCHMARK(rereadWithinAMinute);

void rereadOverACentury(benchmark::State &state)
{
    analysis::WallClock clock;
    // Asking Qt about each day comes first, and once; what follows is what a long capture pays.
    for (qint64 day = 0; day < 49'711; ++day)
        clock.reread(day * 86'400'000);
    quint32 second = 1;
    for ([[maybe_unused]] auto _ : state) {
        second = second * 1'664'525U + 1'013'904'223U;
        benchmark::DoNotOptimize(clock.reread(qint64(second) * 1'000));
    }
}
BENCHMARK(rereadOverACentury);

void decodeDelayResp(benchmark::State &state)
{
    std::array<uint8_t, 54> data{};
    data[0] = 9;
    data[1] = 2;
    data[3] = 54;
    PTPv2::PTPv2Message message;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(PTPv2::decodeMessage(data.data(), data.size(), message));
        benchmark::DoNotOptimize(message);
    }
}
BENCHMARK(decodeDelayResp);

void buildRecord(benchmark::State &state)
{
    analysis::WallClock clock;
    analysis::CaptureTexts texts(clock);
    analysis::StoredMessage stored;
    stored.message.header.messageType = PTPv2::MessageType::DelayResp;
    stored.source = {0x0100000a, true};
    stored.msecs = kStart;
    for ([[maybe_unused]] auto _ : state) {
        stored.msecs += 7;
        ++stored.message.header.sequenceId;
        benchmark::DoNotOptimize(texts.record(stored));
    }
}
BENCHMARK(buildRecord);

//! Requests and responses of one sequence id, every response out of reach of every request.
analysis::CheckMessages messages(int count, qint64 first, qint64 step)
{
    analysis::CheckMessages list(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < list.size(); ++i) {
        list[i].msecs = first + static_cast<qint64>(i) * step;
        list[i].sequence = 7;
        list[i].hasTime = true;
    }
    return list;
}

void matchFiftyThousandOfOneSequenceId(benchmark::State &state)
{
    analysis::WallClock clock;
    analysis::CaptureTexts texts(clock);
    texts.sourceNumber({0x0100000a, true});
    const analysis::CheckMessages requests = messages(kRecords, kStart, 1);
    const analysis::CheckMessages responses = messages(kRecords, kStart + 10'000'000, -1);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(analysis::checkDelayMatching(requests, responses, texts));
}
BENCHMARK(matchFiftyThousandOfOneSequenceId)->Unit(benchmark::kMillisecond);

void checkSlavesOverManyWindows(benchmark::State &state)
{
    analysis::WallClock clock;
    analysis::CaptureTexts texts(clock);
    texts.sourceNumber({0x0100000a, true});
    const analysis::CheckMessages sync = messages(2, kStart, 7'000'000);
    const analysis::CheckMessages requests = messages(kRecords, kStart, 140);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(analysis::checkSlaves(sync, requests, {9, 1.0}, texts, clock));
}
BENCHMARK(checkSlavesOverManyWindows)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
