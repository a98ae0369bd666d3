; What is declared.
(function_declaration name: (_) @name) @declaration
(method_declaration name: (_) @name) @declaration
(type_spec name: (_) @name) @declaration
(type_alias name: (_) @name) @declaration
(const_spec (identifier) @name) @variable @constant
(var_spec name: (identifier) @name) @variable
(field_declaration name: (_) @name) @declaration
(method_elem name: (_) @name) @declaration

; What belongs to the declaration in it.
(type_declaration) @wrapper
(const_declaration) @wrapper
(var_declaration) @wrapper

; Bodies, and what a variable holds.
(function_declaration body: (_) @body) @of
(method_declaration body: (_) @body) @of
(type_spec type: (struct_type (field_declaration_list) @body)) @of
(type_spec type: (interface_type "{" @body)) @of
(const_spec value: (_) @value) @of
(var_spec value: (_) @value) @of
(var_spec value: (expression_list . (func_literal body: (_) @body))) @callable
(var_spec type: (function_type)) @callable

(function_declaration body: (_) @local)
(method_declaration body: (_) @local)
(func_literal body: (_) @local)

(comment) @comment
