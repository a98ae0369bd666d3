; What is declared.
(class_declaration name: (_) @name body: (_) @body) @declaration
(abstract_class_declaration name: (_) @name body: (_) @body) @declaration
(interface_declaration name: (_) @name body: (_) @body) @declaration
(enum_declaration name: (_) @name body: (_) @body) @declaration
(type_alias_declaration name: (_) @name) @declaration
(function_declaration name: (_) @name body: (_) @body) @declaration
(generator_function_declaration name: (_) @name body: (_) @body) @declaration
(function_signature name: (_) @name) @declaration
(method_definition name: (_) @name body: (_) @body) @declaration
(method_signature name: (_) @name) @declaration
(abstract_method_signature name: (_) @name) @declaration
(public_field_definition name: (_) @name) @declaration
(property_signature name: (_) @name) @declaration
(enum_body name: (_) @name @declaration)
(enum_assignment name: (_) @name) @declaration
(required_parameter (accessibility_modifier) pattern: (identifier) @name) @declaration
(required_parameter "readonly" pattern: (identifier) @name) @declaration
(variable_declarator name: (identifier) @name) @variable
(variable_declarator name: (object_pattern (shorthand_property_identifier_pattern) @name)) @variable
(variable_declarator name: (object_pattern (pair_pattern value: (identifier) @name))) @variable
(variable_declarator name: (array_pattern (identifier) @name)) @variable
(internal_module name: (_) @name body: (_) @body) @declaration @namespace
(module name: (_) @name body: (_) @body) @declaration @namespace

; What belongs to the declaration in it, or below it.
(export_statement declaration: (_)) @wrapper
(lexical_declaration) @wrapper
(variable_declaration) @wrapper
(expression_statement (internal_module)) @wrapper
(ambient_declaration [
  (class_declaration) (abstract_class_declaration) (interface_declaration) (enum_declaration) (type_alias_declaration)
  (function_signature) (lexical_declaration) (variable_declaration) (internal_module) (module)
]) @wrapper
(decorator) @attribute

; What a constant or a field holds.
(variable_declarator value: (_) @value) @of
(public_field_definition value: (_) @value) @of
(variable_declarator value: (arrow_function body: (_) @body)) @callable
(variable_declarator value: (function_expression body: (_) @body)) @callable
(variable_declarator value: (generator_function body: (_) @body)) @callable
(variable_declarator value: [
  (as_expression [(arrow_function body: (_) @body) (function_expression body: (_) @body)])
  (as_expression (parenthesized_expression [(arrow_function body: (_) @body) (function_expression body: (_) @body)]))
  (satisfies_expression [(arrow_function body: (_) @body) (function_expression body: (_) @body)])
  (parenthesized_expression [(arrow_function body: (_) @body) (function_expression body: (_) @body)])
]) @callable
(public_field_definition value: (arrow_function body: (_) @body)) @of
(type_alias_declaration value: (object_type) @body) @of
(variable_declarator type: (type_annotation [(function_type) (constructor_type)])) @callable
(variable_declarator type: (type_annotation (object_type . [(call_signature) (construct_signature)]))) @callable
(lexical_declaration kind: "const" (variable_declarator) @constant)

; What is public.
(program [(import_statement) (export_statement)] @module)
(export_statement declaration: (_)) @exported
(export_statement !source (export_clause (export_specifier name: (_) @export)))
(export_statement value: (identifier) @export)
(export_statement "=" (identifier) @export)
(ambient_declaration (module body: (_) @visible))
(ambient_declaration (internal_module body: (_) @visible))

(function_declaration body: (_) @local)
(generator_function_declaration body: (_) @local)
(function_expression body: (_) @local)
(generator_function body: (_) @local)
(arrow_function body: (_) @local)
(method_definition body: (_) @local)

(comment) @comment
