; What is declared.
(class_declaration name: (_) @name body: (_) @body) @declaration
(function_declaration name: (_) @name body: (_) @body) @declaration
(generator_function_declaration name: (_) @name body: (_) @body) @declaration
(method_definition name: (_) @name body: (_) @body) @declaration
(field_definition property: (_) @name) @declaration
(variable_declarator name: (identifier) @name) @variable
(variable_declarator name: (object_pattern (shorthand_property_identifier_pattern) @name)) @variable
(variable_declarator name: (object_pattern (pair_pattern value: (identifier) @name))) @variable
(variable_declarator name: (array_pattern (identifier) @name)) @variable

; What belongs to the declaration in it, or below it.
(export_statement declaration: (_)) @wrapper
(lexical_declaration) @wrapper
(variable_declaration) @wrapper
(decorator) @attribute

; What a constant or a field holds.
(variable_declarator value: (_) @value) @of
(field_definition value: (_) @value) @of
(variable_declarator value: (arrow_function body: (_) @body)) @callable
(variable_declarator value: (function_expression body: (_) @body)) @callable
(variable_declarator value: (generator_function body: (_) @body)) @callable
(field_definition value: (arrow_function body: (_) @body)) @of
(lexical_declaration kind: "const" (variable_declarator) @constant)

; What is public: modules of the language, and those of CommonJS.
(program [(import_statement) (export_statement)] @module)
(export_statement declaration: (_)) @exported
(export_statement !source (export_clause (export_specifier name: (_) @export)))
(export_statement value: (identifier) @export)
(call_expression function: (identifier) @module (#eq? @module "require"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: (identifier) @export
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @exports)
  right: (object [
    (shorthand_property_identifier) @export
    (pair value: (identifier) @export)
  ])
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module property: (property_identifier) @export)
  (#eq? @module "exports"))
(assignment_expression
  left: (member_expression object: (identifier) @module)
  right: (identifier) @export
  (#eq? @module "exports"))
(assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) @module property: (property_identifier) @exports)
    property: (property_identifier) @export)
  (#eq? @module "module") (#eq? @exports "exports"))
(assignment_expression
  left: (member_expression
    object: (member_expression object: (identifier) @module property: (property_identifier) @exports))
  right: (identifier) @export
  (#eq? @module "module") (#eq? @exports "exports"))

(function_declaration body: (_) @local)
(generator_function_declaration body: (_) @local)
(function_expression body: (_) @local)
(generator_function body: (_) @local)
(arrow_function body: (_) @local)
(method_definition body: (_) @local)

(comment) @comment
