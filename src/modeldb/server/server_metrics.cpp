// SPDX-License-Identifier: MIT
#include "modeldb/server/server_metrics.h"

#include <array>
#include <string_view>

#include "base/text/number_text.h"

namespace {

struct CMetric {
    std::string_view name, help;
    bool counts;  ///< it only grows
    std::uint64_t (*value)(const CServerCounts&);
};

constexpr auto kMetrics = std::to_array<CMetric>({
    {"http_received_bytes_total", "Bytes of requests.", true, [](auto& c) { return c.http.receivedBytes; }},
    {"http_sent_bytes_total", "Bytes of answers.", true, [](auto& c) { return c.http.sentBytes; }},
    {"http_connections_total", "Connections since the start.", true,
     [](auto& c) { return c.http.connections; }},
    {"http_connections", "Connections now.", false, [](auto& c) { return c.http.openConnections; }},
    {"http_requests_waiting", "Requests that are not answered yet.", false,
     [](auto& c) { return c.http.waitingRequests; }},
    {"http_spool_bytes", "Bytes of bodies on their way.", false, [](auto& c) { return c.http.spoolBytes; }},
    {"http_refused_connections_total", "Connections beyond the limit.", true,
     [](auto& c) { return c.http.refusedConnections; }},
    {"http_refused_peers_total", "Refusals of one peer that asks for too much.", true,
     [](auto& c) { return c.http.refusedPeers; }},
    {"http_refused_busy_total", "Refusals because too much waits.", true,
     [](auto& c) { return c.http.refusedBusy; }},
    {"http_malformed_total", "Requests that are no HTTP.", true, [](auto& c) { return c.http.malformed; }},
    {"http_timed_out_total", "Requests and answers that were too slow.", true,
     [](auto& c) { return c.http.timedOut; }},
    {"http_faults_total", "Requests that nothing answered.", true, [](auto& c) { return c.http.faults; }},
    {"hot_bytes", "Bytes in the hot folder.", false, [](auto& c) { return c.hot.bytes; }},
    {"hot_files", "Files in the hot folder.", false, [](auto& c) { return c.hot.files; }},
    {"hot_hits_total", "Files found in the hot folder.", true, [](auto& c) { return c.hot.hits; }},
    {"hot_fills_total", "Files written to the hot folder.", true, [](auto& c) { return c.hot.fills; }},
    {"hot_dropped_total", "Files deleted from the hot folder.", true, [](auto& c) { return c.hot.dropped; }},
    {"page_cache_bytes", "Memory of lists that are kept.", false, [](auto& c) { return c.pageBytes; }},
    {"work_waiting", "Requests that wait for a worker.", false, [](auto& c) { return c.waiting; }},
    {"uploads_waiting", "Uploads that wait for a worker.", false, [](auto& c) { return c.waitingUploads; }},
    {"uploads_added_total", "Models that were added.", true, [](auto& c) { return c.uploadsAdded; }},
    {"uploads_same_total", "Uploads of models that were there.", true, [](auto& c) { return c.uploadsSame; }},
    {"uploads_refused_total", "Uploads that were refused.", true, [](auto& c) { return c.uploadsRefused; }},
    {"uploads_failed_total", "Uploads that the server could not take.", true,
     [](auto& c) { return c.uploadsFailed; }},
    {"previews_drawn_total", "Previews that were drawn.", true, [](auto& c) { return c.previews.drawn; }},
    {"previews_failed_total", "Previews that could not be drawn.", true,
     [](auto& c) { return c.previews.failed; }},
    {"previews_waiting", "Previews that are to be drawn.", false, [](auto& c) { return c.previews.waiting; }},
    {"store_failures_total", "Requests that the store could not answer.", true,
     [](auto& c) { return c.storeFailures; }},
    {"memory_bytes", "Memory of the process.", false, [](auto& c) { return c.memoryBytes; }},
});

constexpr std::string_view kPrefix = "orbivue_modeldb_";

void Begin(std::string& text, std::string_view name, std::string_view help, std::string_view type) {
    text.append("# HELP ").append(kPrefix).append(name).append(" ").append(help).append("\n# TYPE ");
    text.append(kPrefix).append(name).append(" ").append(type).append("\n");
}

void Add(std::string& text, std::string_view name, const std::string& labels, const std::string& value) {
    text.append(kPrefix).append(name).append(labels).append(" ").append(value).append("\n");
}

void AddAnswers(std::string& text, const CHttpCounters& http) {
    constexpr std::string_view kName = "http_answers_total";
    Begin(text, kName, "Answers, by the first digit of their status.", "counter");
    for (std::size_t i = 2; i < http.answers.size(); ++i)
        Add(text, kName, "{status=\"" + std::to_string(i) + "xx\"}", std::to_string(http.answers[i]));
}

void AddSeconds(std::string& text, const CHttpCounters& http) {
    constexpr std::string_view kName = "http_seconds";
    Begin(text, kName, "Time from a request's head to the last byte of its answer.", "histogram");
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < http.secondsCounts.size(); ++i) {
        count += http.secondsCounts[i];
        const bool isLast = i == CHttpCounters::kSecondsBounds.size();
        const std::string bound =
            isLast ? std::string("+Inf") : number_text::FormatShortest(CHttpCounters::kSecondsBounds[i]);
        Add(text, "http_seconds_bucket", "{le=\"" + bound + "\"}", std::to_string(count));
    }
    Add(text, "http_seconds_sum", "", number_text::FormatShortest(http.secondsSum));
    Add(text, "http_seconds_count", "", std::to_string(count));
}

}  // namespace

std::string MetricsText(const CServerCounts& counts) {
    std::string text;
    AddAnswers(text, counts.http);
    AddSeconds(text, counts.http);
    for (const CMetric& metric : kMetrics) {
        Begin(text, metric.name, metric.help, metric.counts ? "counter" : "gauge");
        Add(text, metric.name, "", std::to_string(metric.value(counts)));
    }
    return text;
}
