#include "host/worktree/syntax_bytes.h"

#include "host/syntax/operands.h"

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>

namespace host::worktree {

namespace {

using syntax::Built;
using syntax::Declaration;
using syntax::Expression;
using syntax::Import;
using syntax::Kind;
using syntax::Mention;
using syntax::Operand;
using syntax::Operands;
using syntax::Operation;
using syntax::Role;
using syntax::Syntax;

constexpr std::uint64_t END_OF_NUMBERS = std::uint64_t{std::numeric_limits<std::uint32_t>::max()} + 1;
constexpr std::uint64_t END_OF_BYTES = 256;

void write_flags(ByteWriter& out, std::initializer_list<bool> flags) {
    std::uint64_t bits = 0;
    for (const bool flag : flags) {
        bits = (bits << 1U) | (flag ? 1U : 0U);
    }
    out.number(bits);
}

// The flags that `write_flags` wrote, taken from the last to the first.
class Flags {
  public:
    explicit Flags(ByteReader& in) : bits_(in.number()) {}
    bool last() {
        const bool flag = (bits_ & 1U) != 0;
        bits_ >>= 1U;
        return flag;
    }

  private:
    std::uint64_t bits_;
};

void write_declaration(ByteWriter& out, const Declaration& declaration) {
    // Fails to compile when a member is added.
    const auto& [name, written, kind, parent, owner, type, bases, parameters, alternative_of, offset, built,
                 least_arguments, most_arguments, is_private, is_definition, is_static, is_hidden, is_local, is_in_test,
                 is_implicit, is_substitute] = declaration;
    for (const std::uint32_t number : {name, written, static_cast<std::uint32_t>(kind), parent + 1, owner, type, bases,
                                       parameters, alternative_of + 1, offset, static_cast<std::uint32_t>(built),
                                       std::uint32_t{least_arguments}, std::uint32_t{most_arguments}}) {
        out.number(number);
    }
    write_flags(out,
                {is_private, is_definition, is_static, is_hidden, is_local, is_in_test, is_implicit, is_substitute});
}

void write_import(ByteWriter& out, const Import& import) {
    const auto& [name, module, original, further, around, built, is_star, is_exported, is_system, is_type,
                 is_in_function, is_in_comment] = import;
    for (const std::uint32_t number :
         {name, module, original, further, around + 1, static_cast<std::uint32_t>(built)}) {
        out.number(number);
    }
    write_flags(out, {is_star, is_exported, is_system, is_type, is_in_function, is_in_comment});
}

void write_mention(ByteWriter& out, const Mention& mention) {
    const auto& [expression, role, built, arguments, count, line] = mention;
    for (const std::uint32_t number : {expression, static_cast<std::uint32_t>(role), static_cast<std::uint32_t>(built),
                                       std::uint32_t{arguments}, count, line}) {
        out.number(number);
    }
}

// Reads a syntax whose numbers of things are known from the beginning.
class SyntaxReader {
  public:
    explicit SyntaxReader(ByteReader& in) : in_(in), names_(in.count()) {
        syntax_.expressions.resize(in.count());
        syntax_.lists.resize(in.count());
        syntax_.declarations.resize(in.count());
        syntax_.imports.resize(in.count());
        syntax_.mentions.resize(in.count());
    }

    Syntax read() {
        while (syntax_.names.size() < names_) {
            syntax_.names.add(in_.text());
        }
        syntax_.package = name();
        syntax_.constraint = name();
        read_lists();
        for (Expression& expression : syntax_.expressions) {
            expression = this->expression();
        }
        for (std::uint32_t id = 0; id < syntax_.declarations.size(); ++id) {
            syntax_.declarations[id] = declaration(id);
        }
        for (Import& import : syntax_.imports) {
            import = this->import();
        }
        for (Mention& mention : syntax_.mentions) {
            mention = {.expression = expression_id(),
                       .role = static_cast<Role>(in_.below(std::uint64_t{static_cast<std::uint8_t>(Role::KEY)} + 1)),
                       .built = built(),
                       .arguments = in_.below<std::uint8_t>(END_OF_BYTES),
                       .count = in_.below(END_OF_NUMBERS),
                       .line = in_.below(END_OF_NUMBERS)};
        }
        return std::move(syntax_);
    }

  private:
    syntax::NameId name() { return in_.below(syntax_.names.size()); }
    syntax::ExpressionId expression_id() { return in_.below(syntax_.expressions.size()); }
    Built built() { return static_cast<Built>(in_.below(std::uint64_t{static_cast<std::uint8_t>(Built::NEVER)} + 1)); }
    // Of a declaration before `end`, or NO_DECLARATION.
    syntax::DeclarationId declaration_id(std::size_t end) { return in_.below(end + 1) - 1; }

    // Each list must end within all, wherever it begins: an expression may begin one anywhere.
    void read_lists() {
        for (std::uint32_t& item : syntax_.lists) {
            item = in_.below(std::max(syntax_.expressions.size(), syntax_.lists.size()));
        }
    }

    syntax::ListId list_id() {
        const auto id = in_.below(syntax_.lists.size());
        const std::size_t size = syntax_.lists[id];
        if (size >= syntax_.lists.size() - id) {
            throw Malformed();
        }
        for (const syntax::ExpressionId element : syntax_.list(id)) {
            if (element >= syntax_.expressions.size()) {
                throw Malformed();
            }
        }
        return id;
    }

    std::uint32_t operand(Operand kind) {
        switch (kind) {
        case Operand::EXPRESSION:
            return expression_id();
        case Operand::LIST:
            return list_id();
        case Operand::DECLARATION:
            return declaration_id(syntax_.declarations.size());
        case Operand::IMPORT:
            return in_.below(syntax_.imports.size());
        case Operand::NUMBER:
            break;
        }
        return in_.below(END_OF_NUMBERS);
    }

    Expression expression() {
        const auto operation =
            static_cast<Operation>(in_.below(std::uint64_t{static_cast<std::uint8_t>(Operation::FOREIGN)} + 1));
        const Operands operands = syntax::operands_of(operation);
        return {.operation = operation, .a = operand(operands.a), .b = operand(operands.b), .name = name()};
    }

    Declaration declaration(std::size_t before) {
        Declaration declaration;
        declaration.name = name();
        declaration.written = name();
        declaration.kind = static_cast<Kind>(in_.below(std::uint64_t{static_cast<std::uint8_t>(Kind::MACRO)} + 1));
        declaration.parent = declaration_id(before);
        declaration.owner = expression_id();
        declaration.type = expression_id();
        declaration.bases = list_id();
        declaration.parameters = list_id();
        declaration.alternative_of = declaration_id(before);
        declaration.offset = in_.below(END_OF_NUMBERS);
        declaration.built = built();
        declaration.least_arguments = in_.below<std::uint8_t>(END_OF_BYTES);
        declaration.most_arguments = in_.below<std::uint8_t>(END_OF_BYTES);
        Flags flags(in_);
        declaration.is_substitute = flags.last();
        declaration.is_implicit = flags.last();
        declaration.is_in_test = flags.last();
        declaration.is_local = flags.last();
        declaration.is_hidden = flags.last();
        declaration.is_static = flags.last();
        declaration.is_definition = flags.last();
        declaration.is_private = flags.last();
        return declaration;
    }

    Import import() {
        Import import;
        import.name = name();
        import.module = name();
        import.original = name();
        import.further = name();
        import.around = declaration_id(syntax_.declarations.size());
        import.built = built();
        Flags flags(in_);
        import.is_in_comment = flags.last();
        import.is_in_function = flags.last();
        import.is_type = flags.last();
        import.is_system = flags.last();
        import.is_exported = flags.last();
        import.is_star = flags.last();
        return import;
    }

    ByteReader& in_;
    std::size_t names_;
    Syntax syntax_;
};

void write_expression(ByteWriter& out, const Expression& expression) {
    const auto& [operation, a, b, name] = expression;
    const Operands operands = syntax::operands_of(operation);
    out.number(static_cast<std::uint8_t>(operation));
    // One more for a declaration, so that NO_DECLARATION is 0.
    out.number(operands.a == Operand::DECLARATION ? a + 1 : a);
    out.number(b);
    out.number(name);
}

}  // namespace

void write_syntax(ByteWriter& out, const Syntax& syntax) {
    const auto& [names, expressions, lists, declarations, imports, mentions, places, package, constraint] = syntax;
    for (const std::size_t size :
         {names.size(), expressions.size(), lists.size(), declarations.size(), imports.size(), mentions.size()}) {
        out.number(size);
    }
    for (syntax::NameId id = 1; id < names.size(); ++id) {  // the first is always the empty one
        out.text(names[id]);
    }
    out.number(package);
    out.number(constraint);
    for (const std::uint32_t number : lists) {
        out.number(number);
    }
    for (const Expression& expression : expressions) {
        write_expression(out, expression);
    }
    for (const Declaration& declaration : declarations) {
        write_declaration(out, declaration);
    }
    for (const Import& import : imports) {
        write_import(out, import);
    }
    for (const Mention& mention : mentions) {
        write_mention(out, mention);
    }
}

Syntax read_syntax(ByteReader& in) {
    return SyntaxReader(in).read();
}

bool has_name(ByteReader& in, const std::function<bool(std::string_view name)>& is_wanted) {
    const std::size_t names = in.count();
    for (int other_sizes = 0; other_sizes < 5; ++other_sizes) {
        static_cast<void>(in.count());
    }
    for (std::size_t name = 1; name < names; ++name) {
        if (is_wanted(in.text())) {
            return true;
        }
    }
    return false;
}

}  // namespace host::worktree
