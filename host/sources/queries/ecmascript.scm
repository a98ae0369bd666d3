; What is declared.
(class_declaration name: (_) @name body: (_) @body) @class
(function_declaration name: (_) @name body: (_) @body) @function
(generator_function_declaration name: (_) @name body: (_) @body) @function
(method_definition name: (_) @name body: (_) @body) @method
(class_body (method_definition name: (property_identifier) @called (#eq? @called "constructor")) @constructor)
(variable_declarator name: (identifier) @name) @binding
(variable_declarator name: (object_pattern (shorthand_property_identifier_pattern) @name)) @binding
(variable_declarator name: (object_pattern (pair_pattern value: (identifier) @name))) @binding
(variable_declarator name: (array_pattern (identifier) @name)) @binding

; What belongs to the declaration in it, or below it.
(export_statement declaration: (_)) @wrapper
(lexical_declaration) @wrapper
(variable_declaration) @wrapper
(decorator) @decorator

; What a constant holds.
(variable_declarator value: (_) @value) @of
(variable_declarator value: (arrow_function body: (_) @body)) @callable
(variable_declarator value: (function_expression body: (_) @body)) @callable
(variable_declarator value: (generator_function body: (_) @body)) @callable
(variable_declarator
  value: (parenthesized_expression [(arrow_function body: (_) @body) (function_expression body: (_) @body)])) @callable
(lexical_declaration kind: "const" (variable_declarator) @const)

; What is public: the modules of the language.
(program [(import_statement) (export_statement)] @module)
(ERROR [(import_statement) (export_statement)] @module)
(export_statement declaration: (_)) @exported
(export_statement !source (export_clause (export_specifier name: (_) @export)))
(export_statement value: (identifier) @export)

(function_declaration body: (_) @local)
(generator_function_declaration body: (_) @local)
(function_expression body: (_) @local)
(generator_function body: (_) @local)
(arrow_function body: (_) @local)
(method_definition body: (_) @local)

; Blocks, whose variables are their own.
(program (statement_block) @local)
(if_statement (statement_block) @local)
(else_clause (statement_block) @local)
[(for_statement) (for_in_statement) (while_statement) (do_statement) (try_statement) (switch_statement)] @local

(comment) @comment
