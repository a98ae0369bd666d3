; What is declared.
(abstract_class_declaration name: (_) @name body: (_) @body) @class
(interface_declaration name: (_) @name body: (_) @body) @interface
(enum_declaration name: (_) @name body: (_) @body) @enum
(type_alias_declaration name: (_) @name) @type
(function_signature name: (_) @name) @function
(method_signature name: (_) @name) @method
(class_body (method_signature name: (property_identifier) @called (#eq? @called "constructor")) @constructor)
(abstract_method_signature name: (_) @name) @method
(public_field_definition name: (_) @name) @attribute
(property_signature name: (_) @name) @attribute
(enum_body name: (_) @name @constant)
(enum_assignment name: (_) @name) @constant
(required_parameter (accessibility_modifier) pattern: (identifier) @name) @attribute
(required_parameter "readonly" pattern: (identifier) @name) @attribute
(optional_parameter (accessibility_modifier) pattern: (identifier) @name) @attribute
(optional_parameter "readonly" pattern: (identifier) @name) @attribute
(internal_module name: (_) @name body: (_) @body) @declaration @namespace
(module name: (_) @name body: (_) @body) @declaration @namespace

; What belongs to the declaration in it, or below it.
(expression_statement (internal_module)) @wrapper
(ambient_declaration [
  (class_declaration) (abstract_class_declaration) (interface_declaration) (enum_declaration) (type_alias_declaration)
  (function_signature) (lexical_declaration) (variable_declaration) (internal_module) (module)
]) @wrapper

; What a constant or a field holds.
(public_field_definition value: (_) @value) @of
(variable_declarator value: [
  (as_expression [(arrow_function body: (_) @body) (function_expression body: (_) @body)])
  (as_expression (parenthesized_expression [(arrow_function body: (_) @body) (function_expression body: (_) @body)]))
  (satisfies_expression [(arrow_function body: (_) @body) (function_expression body: (_) @body)])
]) @callable
(public_field_definition value: (arrow_function body: (_) @body)) @of
(type_alias_declaration value: (object_type) @body) @of

; What can be called: types of these forms, and what is of such a type, has one as a part or extends one.
[(function_type) (constructor_type)] @callable
(object_type [(call_signature) (construct_signature)]) @callable
(interface_declaration body: (interface_body [(call_signature) (construct_signature)])) @callable
(variable_declarator type: (type_annotation [
  (type_identifier) @named
  (nested_type_identifier name: (_) @named)
  (generic_type name: [(type_identifier) @named (nested_type_identifier name: (_) @named)])
  (_) @part
])) @of
(type_alias_declaration value: [
  (type_identifier) @named
  (nested_type_identifier name: (_) @named)
  (generic_type name: [(type_identifier) @named (nested_type_identifier name: (_) @named)])
  (_) @part
]) @of
(parenthesized_type [
  (type_identifier) @named
  (nested_type_identifier name: (_) @named)
  (generic_type name: [(type_identifier) @named (nested_type_identifier name: (_) @named)])
  (_) @part
]) @of
(intersection_type [
  (type_identifier) @named
  (nested_type_identifier name: (_) @named)
  (generic_type name: [(type_identifier) @named (nested_type_identifier name: (_) @named)])
  (_) @part
]) @of
(interface_declaration (extends_type_clause [
  (type_identifier) @named
  (nested_type_identifier name: (_) @named)
  (generic_type name: [(type_identifier) @named (nested_type_identifier name: (_) @named)])
])) @of

; What is public.
(export_statement "=" (identifier) @export)
(ambient_declaration (module body: (_) @visible))
(ambient_declaration (internal_module body: (_) @visible))

; Bodies. Those of JavaScript may export something.
(function_declaration body: (_) @enclosed)
(generator_function_declaration body: (_) @enclosed)
(function_expression body: (_) @enclosed)
(generator_function body: (_) @enclosed)
(arrow_function body: (_) @enclosed)
(method_definition body: (_) @enclosed)
