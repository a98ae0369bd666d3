#include "workers/wiki/scope/internal/table_text.h"
#include "workers/wiki/scope/render.h"

namespace wiki::scope {

namespace {

std::string intro_line(const std::vector<Text>& unresolved_languages) {
    if (unresolved_languages.empty()) {
        return "Production files outside this page that use its code, counted from `import` and `local` edges only "
               "(evidence); `unique` and `ambiguous` edges match a name and are not counted.\n";
    }
    const std::string languages = _joined(unresolved_languages, [](const Text& language) {
        return std::string(language.empty() ? "files of unknown language" : language.view());
    });
    return _concatenated(
        {"The index does not resolve imports for ", languages,
         ", so the files below reference this page's code by a `unique` name (the only production declaration of that "
         "name): likely uses, not proven ones. Attribute and constant names are not counted.\n"});
}

std::string consumer_line(const Consumer& consumer) {
    const std::string names = _listed(consumer.names, [](const UsedName& used) {
        return _concatenated({"`", used.name, "`"});
    });
    return _concatenated(
        {"- `", consumer.path, "` uses ", names, " (", std::to_string(consumer.references), " refs)\n"});
}

std::string overflow_line(std::size_t more) {
    return _concatenated({"- _...and ", std::to_string(more), " more files_\n"});
}

std::string no_consumers_line(bool by_name) {
    return _concatenated({"0 production consumers: no production file outside this page reaches its code ",
                          by_name ? "by a unique name.\n" : "through an `import` or `local` edge.\n"});
}

std::string uncounted_line(const std::vector<UncountedReferences>& uncounted, std::size_t files) {
    const std::string mix = _joined(uncounted, [](const UncountedReferences& each) {
        return _concatenated({std::to_string(each.references), " `", each.resolution, "`"});
    });
    return _concatenated(
        {"Not counted: ", mix, " references from ", std::to_string(files), " other file", files > 1 ? "s" : "",
         " that match a name only (an attribute or a call that shares a name with a declaration here).\n"});
}

std::string unused_line(const models::Excerpt<const ScopeSymbol*>& unused) {
    const std::string shown = _joined(unused.shown, [](const ScopeSymbol* symbol) {
        return _concatenated({"`", symbol->name, "` (", symbol->kind, ", `", symbol->path, ":L",
                              std::to_string(symbol->start_line), "`)"});
    });
    return _concatenated(
        {"Used by no production file outside this page: ", shown,
         unused.left_out() > 0 ? _concatenated({" and ", std::to_string(unused.left_out()), " more"}) : "",
         " (code used inside the page, entry points, and code reached dynamically or by name can still be live).\n"});
}

}  // namespace

ConsumersText consumers_text(const Consumers& consumers) {
    ConsumersText text{
        .explanation = intro_line(consumers.unresolved_languages), .consumers = {}, .more_consumers = {}, .notes = {}};
    text.consumers.reserve(consumers.files.shown.size());
    for (const Consumer& consumer : consumers.files.shown) {
        text.consumers.push_back(consumer_line(consumer));
    }
    if (consumers.files.left_out() > 0) {
        text.more_consumers = overflow_line(consumers.files.left_out());
    }
    if (consumers.files.total == 0) {
        text.notes.push_back(no_consumers_line(!consumers.unresolved_languages.empty()));
    }
    if (!consumers.uncounted.empty()) {
        text.notes.push_back(uncounted_line(consumers.uncounted, consumers.uncounted_files));
    }
    if (consumers.unused.total > 0) {
        text.notes.push_back(unused_line(consumers.unused));
    }
    return text;
}

std::string render_consumers(const Consumers& consumers, std::string_view heading) {
    const ConsumersText text = consumers_text(consumers);
    std::string block(heading);
    block.append("\n\n").append(text.explanation);
    for (const std::string& line : text.consumers) {
        block += line;
    }
    block += text.more_consumers;
    for (const std::string& line : text.notes) {
        block += line;
    }
    return block;
}

std::string render_consumers(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading) {
    return render_consumers(consumers(facts, fan_in), heading);
}

}  // namespace wiki::scope
