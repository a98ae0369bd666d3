#include "host/resolve/resolver.h"

#include "host/resolve/catalog.h"
#include "host/resolve/definitions.h"
#include "host/resolve/doubts.h"
#include "host/resolve/evaluator.h"
#include "host/resolve/languages.h"
#include "host/resolve/possible_targets.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace host::resolve {

namespace {

using syntax::Built;
using syntax::Declaration;
using syntax::Kind;
using syntax::Mention;
using What = Entity::What;

// What a token may refer to.
struct Targets {
    std::vector<Target> targets;    // each once
    std::vector<Target> elsewhere;  // on other systems than the one whose code it stands in; likewise
    std::vector<Target> possible;   // without evidence: where it leads to nothing, behind aliases, in stubs; likewise
    bool is_foreign = false;        // or to something foreign
    bool is_unique = false;         // by its name alone
};

bool is_bound(Evidence evidence) {
    return evidence == Evidence::IMPORT || evidence == Evidence::LOCAL;
}

bool takes(const Declaration& function, std::uint8_t arguments) {
    return function.kind != Kind::FUNCTION || arguments == Declaration::ANY_NUMBER ||
           (function.least_arguments <= arguments &&
            (arguments <= function.most_arguments || function.most_arguments == Declaration::ANY_NUMBER));
}

}  // namespace

// The declarations of a repository with all that is a member of something put there.
class Resolver::Linked {
  public:
    explicit Linked(const Repository& repository)
        : catalog_(repository), languages_(catalog_), doubts_(catalog_, languages_) {
        catalog_.link();
        if (place_owned([](Kind kind) { return kind == Kind::TYPE; })) {  // in which others may have their place
            catalog_.link();
        }
        if (place_owned([](Kind kind) { return kind != Kind::TYPE; })) {
            catalog_.link();
        }
        possible_targets_.emplace(catalog_, languages_);
    }

    [[nodiscard]] References references_of(FileId file) const {
        std::unique_ptr<Evaluator> evaluator = borrow();
        std::map<std::pair<Target, Evidence>, Reference> found;
        References references;
        for (const Mention& mention : catalog_.syntax(file).mentions) {
            const Targets targets = targets_of(*evaluator, file, mention);
            if (targets.targets.empty() && targets.elsewhere.empty() && !targets.is_foreign) {
                references.unresolved += mention.count;
            }
            const auto add = [&](const Target& target, Evidence evidence) {
                Reference& reference =
                    found.try_emplace({target, evidence}, Reference{target, 0, mention.line, evidence}).first->second;
                reference.count += mention.count;
                reference.line = std::min(reference.line, mention.line);
            };
            for (const Target& target : targets.targets) {
                add(target, evidence_for(file, target, targets));
            }
            for (const std::vector<Target>& unproven : {targets.elsewhere, targets.possible}) {
                for (const Target& target : unproven) {
                    add(target, Evidence::AMBIGUOUS);
                }
            }
        }
        for (syntax::DeclarationId id = 0; id < catalog_.syntax(file).declarations.size(); ++id) {
            for (const Symbol macro : possible_targets_->macros_over(catalog_.symbol(file, id))) {
                const Target target{catalog_.file_of(macro),
                                    catalog_.declaration_id(catalog_.first_alternative(macro))};
                ++found.try_emplace({target, Evidence::AMBIGUOUS}, Reference{target, 0, 0, Evidence::AMBIGUOUS})
                      .first->second.count;
            }
        }
        references.references.reserve(found.size());
        for (const auto& [key, reference] : found) {
            references.references.push_back(reference);
        }
        give_back(std::move(evaluator));
        return references;
    }

    [[nodiscard]] std::vector<TokenTarget> tokens_of(FileId file) const {
        const syntax::Syntax& syntax = catalog_.syntax(file);
        std::vector<TokenTarget> tokens;
        if (syntax.places.empty()) {
            return tokens;
        }
        std::unique_ptr<Evaluator> evaluator = borrow();
        std::span<const syntax::TokenPlace> places = syntax.places;
        for (const Mention& mention : syntax.mentions) {
            const Targets targets = targets_of(*evaluator, file, mention);
            for (const Target& target : targets.targets) {
                const Evidence evidence = evidence_for(file, target, targets);
                for (std::size_t at = 0; at < mention.count && is_bound(evidence); ++at) {
                    tokens.push_back({places[at], target});
                }
            }
            places = places.subspan(mention.count);
        }
        give_back(std::move(evaluator));
        std::ranges::sort(tokens);
        return tokens;
    }

    [[nodiscard]] std::vector<FileId> imports_of(FileId file) const {
        std::vector<FileId> files;
        if (languages_.rules(file) == nullptr) {
            return files;
        }
        const syntax::Syntax& syntax = catalog_.syntax(file);
        for (const syntax::Import& import : syntax.imports) {
            const Found found = languages_.modules(file).find(file, import);
            if (import.is_in_comment || found.modules.size() != 1 || !found.path.empty()) {
                continue;
            }
            const Container module = found.modules.front();
            const std::span<const FileId> of_module = catalog_.files_of(module);
            const bool is_file = of_module.size() == 1 && of_module.front() != file;
            if (is_file &&
                languages_.modules(of_module.front()).submodule(module, syntax.name(import.original)) == NONE) {
                files.push_back(of_module.front());
            }
        }
        std::ranges::sort(files);
        files.erase(std::unique(files.begin(), files.end()), files.end());
        return files;
    }

    [[nodiscard]] bool is_defined_elsewhere(Symbol symbol) const {
        return !catalog_.declaration(symbol).is_definition &&
               definitions(catalog_, std::span(&symbol, 1)) != std::vector{symbol};
    }

    [[nodiscard]] Symbol symbol(FileId file, syntax::DeclarationId declaration) const {
        return catalog_.symbol(file, declaration);
    }

  private:
    // Has what stands outside of its type be a member of that, and a type have the bases that are stated elsewhere.
    // Returns whether there is any such, so that the catalog must be linked again.
    [[nodiscard]] bool place_owned(bool (*is_wanted)(Kind)) {
        Evaluator evaluator(catalog_, languages_, further_bases_);
        std::vector<std::pair<Symbol, Symbol>> owned;
        for (Symbol symbol = 0; symbol < catalog_.symbols(); ++symbol) {
            const Declaration& declaration = catalog_.declaration(symbol);
            if (declaration.owner == syntax::UNKNOWN || !is_wanted(declaration.kind)) {
                continue;
            }
            if (const Symbol type = type_at(evaluator, {catalog_.file_of(symbol), declaration.owner}); type != NONE) {
                owned.emplace_back(symbol, type);
            }
        }
        for (const auto& [symbol, type] : owned) {
            catalog_.set_owner(symbol, type);
            const Declaration& declaration = catalog_.declaration(symbol);
            const FileId file = catalog_.file_of(symbol);
            if (declaration.kind == Kind::TYPE && !languages_.rules(file)->nests_owned_types) {
                catalog_.set_container(symbol, catalog_.container_of(type));
                for (const syntax::ExpressionId base : catalog_.syntax(file).list(declaration.bases)) {
                    further_bases_[type].push_back({file, base});
                }
            }
        }
        return !owned.empty();
    }

    // The type, or the target of a pointer to it, that an expression means; NONE when nothing is known. Of several, as
    // where each system has its own, the first that a build takes.
    Symbol type_at(Evaluator& evaluator, const Place& place) const {
        Symbol first = NONE;
        for (const Entity& entity : evaluator.values(evaluator.evaluate(place))) {
            if (entity.what == What::STRUCTURE) {
                const syntax::Expression& structure = catalog_.syntax(entity.at.file).expressions[entity.at.expression];
                if (structure.operation == syntax::Operation::POINTER) {
                    return type_at(evaluator, {entity.at.file, structure.a});
                }
            }
            const bool is_type = entity.what == What::SYMBOL || entity.what == What::INSTANCE;
            if (is_type && catalog_.container_of(entity.id) != NONE) {
                if (catalog_.built(entity.id) != Built::NEVER || catalog_.is_left_out(place.file)) {
                    return entity.id;
                }
                first = first == NONE ? entity.id : first;
            }
        }
        return first;
    }

    Targets targets_of(Evaluator& evaluator, FileId file, const Mention& mention) const {
        Targets targets;
        std::vector<Symbol> symbols = symbols_meant(evaluator, file, mention, targets);
        const bool is_built = !catalog_.is_left_out(file) && mention.built != Built::NEVER;
        const auto is_elsewhere = [&](Symbol symbol) { return is_built && doubts_.is_elsewhere(file, symbol); };
        const auto is_left_to_library = [&](bool (Doubts::*is_so)(Symbol) const) {
            const auto is_left = [&](Symbol each) { return (doubts_.*is_so)(each); };
            return std::ranges::any_of(symbols, is_left) && !std::ranges::all_of(symbols, is_elsewhere) &&
                   std::ranges::all_of(symbols, [&](Symbol each) { return is_left(each) || is_elsewhere(each); });
        };
        const bool are_elsewhere = std::ranges::all_of(symbols, is_elsewhere);
        targets.is_foreign = targets.is_foreign || is_left_to_library(&Doubts::is_substitute);
        symbols = definitions(catalog_, called_with(with_parts(symbols), mention));  // an announcement has the defaults
        if (symbols.empty() && targets.targets.empty() && !targets.is_foreign) {
            symbols = unique_function(file, mention);
            targets.is_unique = true;
        }
        targets.is_foreign = targets.is_foreign || is_left_to_library(&Doubts::is_substitute) ||
                             is_left_to_library(&Doubts::is_announced_at_most);
        const bool is_first = doubts_.announces_first({file, mention.expression});
        for (const Symbol symbol : symbols) {
            const bool is_of_others = (are_elsewhere && !targets.is_unique) || is_elsewhere(symbol);
            add_target(symbol, is_first ? targets.possible : is_of_others ? targets.elsewhere : targets.targets);
            add_unstated(evaluator, file, symbol, targets.possible);
        }
        if (symbols.empty() && targets.targets.empty() &&
            (!targets.is_foreign || is_plain_name({file, mention.expression}))) {
            for (const Symbol symbol : definitions(catalog_, possible_targets_->of(file, mention))) {
                add_target(symbol, targets.possible);
            }
        }
        std::erase_if(targets.possible, [&](const Target& each) {
            return std::ranges::find(targets.targets, each) != targets.targets.end() ||
                   std::ranges::find(targets.elsewhere, each) != targets.elsewhere.end();
        });
        return targets;
    }

    // What a mention means before definitions are looked for. Adds to the targets what is no symbol.
    std::vector<Symbol> symbols_meant(Evaluator& evaluator, FileId file, const Mention& mention,
                                      Targets& targets) const {
        std::vector<Symbol> symbols;
        for (const Entity& entity : meaning_of(evaluator, {file, mention.expression})) {
            targets.is_foreign = targets.is_foreign || entity.what == What::FOREIGN;
            if (entity.what == What::SYMBOL && is_nameless_export(entity.id)) {
                targets.targets.push_back({catalog_.file_of(entity.id), Target::MODULE});
            } else if (entity.what == What::SYMBOL && !doubts_.is_called_type(file, mention, entity.id)) {
                add_shown(evaluator, entity, symbols);
            } else if (entity.what == What::MODULE && catalog_.files_of(entity.id).size() == 1) {
                targets.targets.push_back({catalog_.files_of(entity.id).front(), Target::MODULE});
            }
        }
        return symbols;
    }

    // Whether it is what a module exports without a declaration: `export default () => 1`.
    [[nodiscard]] bool is_nameless_export(Symbol symbol) const {
        const Declaration& declaration = catalog_.declaration(symbol);
        return declaration.is_hidden && declaration.kind == Kind::VALUE && !declaration.is_private &&
               declaration.parent == syntax::NO_DECLARATION &&
               !languages_.modules(catalog_.file_of(symbol)).whole().empty();
    }

    // Whether something foreign may have the name because the file includes it, not because the text says so.
    [[nodiscard]] bool is_plain_name(const Place& place) const {
        return catalog_.syntax(place.file).expressions[place.expression].operation == syntax::Operation::NAME;
    }

    // Adds what a name of a file that leads to a declaration may mean as well.
    void add_unstated(Evaluator& evaluator, FileId file, Symbol symbol, std::vector<Target>& targets) const {
        for (const std::vector<Symbol>& unstated :
             {types_behind(evaluator, symbol), possible_targets_->linked_with(symbol),
              possible_targets_->macros_after(file, symbol)}) {
            for (const Symbol other : unstated) {
                add_target(other, targets);
            }
        }
        const Container stub = languages_.modules(catalog_.file_of(symbol)).stub_of(catalog_.home_of(symbol));
        for (const Symbol stated : catalog_.members(stub, catalog_.name_of(symbol))) {
            add_target(stated, targets);
        }
    }

    // In C the type that an alias is another name of: `typedef struct S T;`.
    std::vector<Symbol> types_behind(Evaluator& evaluator, Symbol alias) const {
        const Declaration& declaration = catalog_.declaration(alias);
        const FileId file = catalog_.file_of(alias);
        if (declaration.kind != Kind::ALIAS || !languages_.rules(file)->has_macros) {
            return {};
        }
        const Symbol type = type_at(evaluator, {file, declaration.type});
        return type == NONE ? std::vector<Symbol>() : definitions(catalog_, std::span(&type, 1));
    }

    void add_target(Symbol symbol, std::vector<Target>& targets) const {
        const Target target{catalog_.file_of(symbol), catalog_.declaration_id(catalog_.first_alternative(symbol))};
        if (std::ranges::find(targets, target) == targets.end()) {
            targets.push_back(target);
        }
    }

    // Adds the other parts of declarations that have several: of a constant the interface of its name.
    [[nodiscard]] std::vector<Symbol> with_parts(std::vector<Symbol> symbols) const {
        constexpr std::size_t MOST = 16;  // nobody declares more by one name
        for (std::size_t at = 0, found = symbols.size(); at < found && found <= MOST; ++at) {
            const Symbol symbol = symbols[at];
            const LanguageRules* const rules = languages_.rules(catalog_.file_of(symbol));
            if (rules == nullptr || !rules->merges_declarations || catalog_.home_of(symbol) == NONE) {
                continue;
            }
            for (const Symbol other : catalog_.members(catalog_.home_of(symbol), catalog_.name_of(symbol))) {
                if (are_parts(symbol, other) && !catalog_.declaration(other).is_hidden) {
                    symbols.push_back(other);
                }
            }
        }
        return symbols;
    }

    // Whether two declarations are parts of one, where the language has it so.
    [[nodiscard]] bool are_parts(Symbol one, Symbol other) const {
        return catalog_.home_of(one) != NONE && catalog_.home_of(one) == catalog_.home_of(other) &&
               catalog_.name_of(one) == catalog_.name_of(other) && catalog_.file_of(one) == catalog_.file_of(other) &&
               catalog_.declaration(one).is_static == catalog_.declaration(other).is_static;
    }

    // A call mentions the function that it calls.
    Meaning meaning_of(Evaluator& evaluator, const Place& place) const {
        const syntax::Operation operation = catalog_.syntax(place.file).expressions[place.expression].operation;
        return operation == syntax::Operation::CALL ? evaluator.functions_called(place) : evaluator.evaluate(place);
    }

    // Adds a declaration; in place of a hidden alias, unless that is a function's own, the types that it stands for.
    void add_shown(Evaluator& evaluator, const Entity& entity, std::vector<Symbol>& symbols) const {
        const Declaration& declaration = catalog_.declaration(entity.id);
        if (!declaration.is_hidden || declaration.is_local || declaration.kind != Kind::ALIAS) {
            symbols.push_back(entity.id);
            return;
        }
        for (const Entity& type : evaluator.values({entity})) {
            if (type.what == What::SYMBOL) {
                symbols.push_back(type.id);
            }
        }
    }

    // Of several functions those that can be called so, if any can.
    [[nodiscard]] std::vector<Symbol> called_with(std::vector<Symbol> symbols, const Mention& mention) const {
        const auto fits = [&](Symbol symbol) { return takes(catalog_.declaration(symbol), mention.arguments); };
        if (mention.role == syntax::Role::CALL && symbols.size() > 1 && std::ranges::any_of(symbols, fits)) {
            std::erase_if(symbols, [&](Symbol symbol) { return !fits(symbol); });
        }
        return symbols;
    }

    // The only function of a name that nothing binds, where not all bindings can be followed.
    [[nodiscard]] std::vector<Symbol> unique_function(FileId file, const Mention& mention) const {
        const LanguageRules* const rules = languages_.rules(file);
        const syntax::Expression& expression = catalog_.syntax(file).expressions[mention.expression];
        if (rules == nullptr || !rules->has_unique_calls || mention.role != syntax::Role::CALL ||
            expression.operation != syntax::Operation::NAME || !languages_.modules(file).is_open(file)) {
            return {};
        }
        std::vector<Symbol> functions;
        for (const Symbol symbol : catalog_.members(catalog_.module_of(file), catalog_.name(file, expression.name))) {
            const Declaration& declaration = catalog_.declaration(symbol);
            if (declaration.kind == Kind::FUNCTION && declaration.is_definition && !declaration.is_private) {
                functions.push_back(symbol);
            }
        }
        return functions.size() == 1 ? functions : std::vector<Symbol>();
    }

    // Whether all targets are parts of one declaration.
    [[nodiscard]] bool are_merged(const std::vector<Target>& targets) const {
        const auto symbol = [&](const Target& target) {
            return target.declaration == Target::MODULE ? NONE : catalog_.symbol(target.file, target.declaration);
        };
        const Symbol first = symbol(targets.front());
        const LanguageRules* const rules = languages_.rules(targets.front().file);
        return first != NONE && rules != nullptr && rules->merges_declarations &&
               std::ranges::all_of(targets, [&](const Target& target) {
                   const Symbol each = symbol(target);
                   return each != NONE && are_parts(first, each);
               });
    }

    [[nodiscard]] Evidence evidence_for(FileId from, const Target& target, const Targets& all) const {
        if (all.is_foreign || (all.targets.size() > 1 && !are_merged(all.targets))) {
            return Evidence::AMBIGUOUS;
        }
        if (all.is_unique) {
            return Evidence::UNIQUE;
        }
        return target.file == from ? Evidence::LOCAL : Evidence::IMPORT;
    }

    // Evaluators that no thread uses: what they found out serves the next.
    std::unique_ptr<Evaluator> borrow() const {
        const std::scoped_lock lock(mutex_);
        if (idle_.empty()) {
            return std::make_unique<Evaluator>(catalog_, languages_, further_bases_);
        }
        std::unique_ptr<Evaluator> evaluator = std::move(idle_.back());
        idle_.pop_back();
        return evaluator;
    }

    void give_back(std::unique_ptr<Evaluator> evaluator) const {
        constexpr std::size_t MOST_KEPT = 10'000;  // more would not stay in the caches of a core
        evaluator->trim(MOST_KEPT);
        const std::scoped_lock lock(mutex_);
        idle_.push_back(std::move(evaluator));
    }

    Catalog catalog_;
    Languages languages_;
    Doubts doubts_;
    FurtherBases further_bases_;
    std::optional<PossibleTargets> possible_targets_;
    mutable std::mutex mutex_;
    mutable std::vector<std::unique_ptr<Evaluator>> idle_;
};

Resolver::Resolver(const Repository& repository) : linked_(std::make_unique<const Linked>(repository)) {}

Resolver::~Resolver() = default;

References Resolver::references_of(FileId file) const {
    return linked_->references_of(file);
}

std::vector<TokenTarget> Resolver::tokens_of(FileId file) const {
    return linked_->tokens_of(file);
}

std::vector<FileId> Resolver::imports_of(FileId file) const {
    return linked_->imports_of(file);
}

bool Resolver::is_defined_elsewhere(FileId file, syntax::DeclarationId declaration) const {
    return linked_->is_defined_elsewhere(linked_->symbol(file, declaration));
}

}  // namespace host::resolve
