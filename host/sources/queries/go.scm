; What is declared.
(function_declaration name: (_) @name) @function
(method_declaration name: (_) @name) @method
(type_spec name: (_) @name) @type
(type_spec type: (struct_type (field_declaration_list) @body)) @struct
(type_spec type: (interface_type "{" @body)) @interface
(type_alias name: (_) @name) @type
(const_spec (identifier) @name) @binding @constant
(var_spec name: (identifier) @name) @binding @variable
(var_spec value: (expression_list . (func_literal body: (_) @body))) @function
(var_spec type: (function_type)) @function
(field_declaration name: (_) @name) @attribute
(field_declaration !name type: [
    (type_identifier) @name
    (qualified_type name: (_) @name)
    (generic_type type: [(type_identifier) @name (qualified_type name: (_) @name)])
  ]) @attribute
(method_elem name: (_) @name) @method

; What belongs to the declaration in it.
(type_declaration) @wrapper
(const_declaration) @wrapper
(var_declaration) @wrapper

; Bodies, and what a variable holds.
(function_declaration body: (_) @body) @of
(method_declaration body: (_) @body) @of
(const_spec value: (_) @value) @of
(var_spec value: (_) @value) @of

(function_declaration body: (_) @local @enclosed)
(method_declaration body: (_) @local @enclosed)
(func_literal body: (_) @local @enclosed)

(comment) @comment
